#pragma once
// Reference renderer: the picture the effect should make, computed slowly and by another route.
//
// It shares no code with the effect.  Everything is computed in long double; the light along a view ray comes
// from numeric quadrature and the ends of a stretch inside a sphere or cone from inside tests and bisection,
// so agreement with the effect's closed forms is evidence.  Where the effect deliberately departs from plain
// geometry (thresholds, the screen box, the edge samples) the departure is followed to the letter; those
// places say "deliberate:".
//
// Conventions
//   - Lengths are composition pixels; y points down.
//   - Camera space has the camera at the origin, looking along +z.
//   - The view ray is x(t) = t * (dx, dy, 1), through the top-left corner of the pixel; t is depth, not
//     arc length.
//   - Values of the enums are the 1-based choice numbers of the popups.

#include <cstdint>
#include <vector>

namespace zam::reference {

enum class PointModel : std::int32_t { kOff = 1, kNatural, kRadius, kRadiusAndSource, kSource };
enum class SpotModel : std::int32_t { kOff = 1, kNatural, kDistance, kConstant };
enum class Look : std::int32_t {
    kWeak = 1,
    kLinear,
    kNatural,
    kStrong,
    kAdjustableLinear,
    kAdjustableNatural
};
// What changes each light's own radius or reach: nothing, a factor, a factor, or an addend in pixels.
enum class Individual : std::int32_t { kNone = 1, kIntensityMult, kShadowDarknessMult, kShadowDiffusionAdd };

// One light of the composition, world space.  Intensity 0 silences a light (switched off, wrong name, not in
// time).
struct Light {
    bool spot = false;
    double pos[3] = {0.0, 0.0, 0.0};
    double dir[3] = {0.0, 0.0, 1.0};    // spots: local z axis, row 2 of light-to-world; never normalised
    double color[3] = {1.0, 1.0, 1.0};  // 0..1
    double cone_angle = 0.0;            // spots: full opening, radians, 0..pi (above 0 when feathered)
    double cone_feather = 0.0;          // spots: 0..1
    double intensity = 1.0;             // 1 = 100 %
    double shadow_darkness = 1.0;       // 1 = 100 %
    double shadow_diffusion = 0.0;      // pixels
};

// The effect's controls, in the units the user sees, with the values of a fresh instance. Lights arrive filtered by
// those that choose them.
struct Controls {
    PointModel point_model = PointModel::kNatural;
    bool point_use_intensity = true;  // "Light's Intensity"
    double point_intensity = 100.0;   // percent
    double softness = 0.0;            // percent
    double radius = 100.0;            // pixels
    Individual individual_radius = Individual::kNone;
    double source_intensity = 50.0;  // percent
    double source_radius = 6.0;      // pixels

    SpotModel spot_model = SpotModel::kNatural;
    bool spot_use_intensity = true;  // "Light's Intensity"
    double spot_intensity = 100.0;   // percent
    double start_distance = 10.0;    // in lengths of Light::dir (pixels for a unit dir)
    double reach = 400.0;            // in lengths of Light::dir (pixels for a unit dir)
    Individual individual_reach = Individual::kNone;
    bool reach_comp_layer = false;  // "Reach Comp Layer"
    bool reach_both_sides = true;

    Look look = Look::kNatural;
    double gamma = 1.0;
};

// The plane of the reach layer, world space.  Used only when found and Controls::reach_comp_layer is set.
struct Reach {
    bool found = false;
    double point[3] = {0.0, 0.0, 0.0};
    double normal[3] = {0.0, 0.0, 1.0};  // any length above 0
};

struct View {
    // Row-major, points are row vectors on the left: rows 0..2 the camera's axes, not in one plane, row 3 its
    // position. The last column is that of the identity.
    double camera_to_world[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    double zoom = 1000.0;  // camera to image plane, composition pixels
    int width = 0;         // output pixels
    int height = 0;
    double pixel_aspect = 1.0;
    double downsample_x = 1.0;  // 0.5 at half resolution
    double downsample_y = 1.0;
    bool deep = false;  // 16 bits per channel, full scale 32768; else 8 bits, full scale 255
};

struct Frame {
    int width = 0;
    int height = 0;
    bool deep = false;
    std::vector<std::uint16_t> argb;  // codes of 4 channels per pixel, rows top down; straight colour
};

// Renders one frame.  Lights are in layer-stack order; point lights are added before spot lights.
// A zoom, pixel aspect or downsample factor that is 0 or not finite gives an empty (all zero) frame.
//
// A light on the very edge of a decision (a ray exactly across a spot's axis, a stretch of almost no length,
// a screen box ending on a whole pixel) may be decided otherwise in double precision; compare frames with a
// few pixels' grace.
[[nodiscard]] Frame render(const View& view, const Controls& controls, const Reach& reach,
                           const std::vector<Light>& lights);

}  // namespace zam::reference
