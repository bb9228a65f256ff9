#pragma once
// Frames without a host: lights of seeded random scenes made into the records that rows read.
#include <cstdint>
#include <vector>

#include "effect/render/choices.h"
#include "effect/render/light_records.h"
#include "effect/render/render_data.h"
#include "tests/literal/random.h"

namespace zam::literal {

// A host that has the C library's maths, and nothing else.
struct MathsHost {
    MathsHost();
    MathsHost(const MathsHost&) = delete;
    MathsHost& operator=(const MathsHost&) = delete;

    PF_UtilCallbacks utils{};
    PF_InData in_data{};
};

// Which pixels have their cones' edges refined.
enum class Boxes { own, everywhere, nowhere };

// All that a frame is made of. Lights are in world space, where the camera is at the origin and looks along +z
// unless camera_from_world says otherwise.
struct Scene {
    A_long width = 1920, height = 1080;
    bool deep = true;
    Look look = Look::natural;
    double gamma = 2.0;
    double zoom = 2000.0;  // comp px
    double aspect = 1.0, downsample_x = 1.0, downsample_y = 1.0;
    A_Matrix4 camera_from_world{{{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}};
    _LightData points{}, spots{};  // all but the counts
    std::vector<_VisLightStruct> point_lights{}, spot_lights{};
    ReachPlane reach{};
    Boxes boxes = Boxes::own;
};

// The scene's picture at another size.
Scene Resized(Scene scene, A_long width, A_long height);

// A scene with its records. Rows of it may be rendered on several threads at once.
class Frame {
  public:
    explicit Frame(const Scene& scene);

    [[nodiscard]] const _RenderData& data() const { return data_; }
    [[nodiscard]] std::size_t pixel_bytes() const {
        return data_.deep ? sizeof(PF_Pixel16) : sizeof(PF_Pixel);
    }

  private:
    MathsHost host_;
    _LightData points_, spots_;
    std::vector<_VisLightStruct> point_lights_, spot_lights_;
    std::vector<_OptPointData> opt_points_;
    std::vector<_OptSpotData> opt_spots_;
    _RenderData data_;
};

// How much of a 16:9 picture a spot light's cone covers.
enum class Cones {
    typical,  // a beam: about 17 %
    filling,  // all of it, and half the cone's angle does so too: with a feather of 50 % every ray meets all
              // pieces
    outside,  // none of it, nor of a picture half as large again; the cone's mirror image behind the apex may
};

_VisLightStruct RandomPoint(test::Random& random);
_VisLightStruct RandomSpot(test::Random& random, Cones cones, double feather);
void AddPoints(test::Random& random, int count, Scene* scene);
void AddSpots(test::Random& random, int count, Cones cones, double feather, Scene* scene);

// Share of the scene's pixels that its spot lights reach, the mean over the lights.
double Coverage(const Scene& scene);

}  // namespace zam::literal
