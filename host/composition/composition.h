#pragma once
// A composition as plain data: what a scene reader fills, the suites serve and an effect sees.
//
// Axes and units: origin at the image's top left corner, x right, y down, z away from the viewer, one unit =
// one composition pixel. Angles are degrees, percentages are in percent. Times are composition frames (frame
// 0 is the start) and may be fractions; `frame_rate` turns them into seconds.
#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "host/composition/animated.h"
#include "host/composition/matrix.h"

namespace zam::host {

using LayerId = std::int32_t;  // unique in a composition and never 0, which stands for "none"
using ItemId = std::int32_t;

struct Ratio {
    std::int32_t num = 1;
    std::uint32_t den = 1;
    [[nodiscard]] double value() const { return static_cast<double>(num) / static_cast<double>(den); }
};

// Something a layer shows: the source of a solid, say.
struct Item {
    ItemId id = 0;
    std::string name;
    int width = 0, height = 0;  // pixels
};

enum class LayerKind { solid, null_object, camera, light };
enum class LightType : std::uint32_t { parallel = 0, spot = 1, point = 2, ambient = 3 };

// Cameras and lights use neither anchor nor scale. 2D layers use x and y, and of the rotations only z.
struct Transform {
    Animated<Vec3> anchor;
    Animated<Vec3> position;
    Animated<Vec3> scale{Vec3{100.0, 100.0, 100.0}};  // percent
    Animated<Vec3> orientation;                       // degrees
    Animated<double> rotation_x, rotation_y, rotation_z;
    std::optional<Animated<Vec3>>
        point_of_interest;  // in the parent's space, as the position; none: no auto-orientation
};

struct LightSettings {
    LightType type = LightType::spot;
    Animated<double> intensity{100.0};  // percent; negative takes light away
    Animated<Color> color;
    Animated<double> cone_angle{90.0};        // 0 to 180, the full angle
    Animated<double> cone_feather{50.0};      // percent
    Animated<double> shadow_darkness{100.0};  // percent
    Animated<double> shadow_diffusion;        // pixels
    bool casts_shadows = false;
    Animated<double> falloff;                  // 0 none, 1 smooth, 2 inverse square
    Animated<double> falloff_start{500.0};     // pixels
    Animated<double> falloff_distance{500.0};  // pixels
};

struct CameraSettings {
    Animated<double> zoom;  // pixels, > 0
};

struct Layer {
    LayerId id = 0;
    LayerKind kind = LayerKind::solid;
    std::string name;          // may be empty: then the source item's name is shown
    LayerId parent = 0;        // 0 = none; no cycles
    ItemId source = 0;         // 0 = none
    double in_frame = 0.0;     // first visible frame
    double out_frame = 0.0;    // first frame no longer visible
    double start_frame = 0.0;  // composition frame of layer time 0
    double stretch = 100.0;    // percent
    bool video = true, solo = false, shy = false, locked = false;
    bool three_d = true;  // cameras and lights are 3D by nature
    Transform transform;
    // The whole way from the layer to the world, where it was computed elsewhere: it then takes the place of
    // the transform and of all parents. The streams of the transform keep what `transform` says.
    std::optional<Animated<Matrix>> world;
    LightSettings light;    // for lights
    CameraSettings camera;  // for cameras
};

// One control of an effect as a scene gives it: a number, a truth value, or a text (a popup's choice, a
// layer's name).
struct ControlValue : std::variant<double, bool, std::string> {
    using variant::variant;
};
struct ControlSetting {
    std::string control;  // "Look", "Spot Lights/Intensity" (group and name) or "#25" (persistent id)
    Animated<ControlValue> value;
    std::string where;  // "file:line:column" for messages; may be empty
};

struct EffectSettings {
    LayerId layer = 0;  // the layer that carries the effect
    std::vector<ControlSetting> controls;
};

struct Composition {
    std::string name = "Comp";
    int width = 1920, height = 1080;
    Ratio pixel_aspect;                               // width / height of a pixel
    Ratio frame_rate{24, 1};                          // frames per second
    int duration = 1;                                 // frames
    int work_area_start = 0, work_area_duration = 1;  // frames
    std::vector<Item> items;
    std::vector<Layer> layers;  // index 0 is the top of the stack
    EffectSettings effect;

    [[nodiscard]] const Layer* find_layer(LayerId id) const;  // null when there is none
    [[nodiscard]] Layer* find_layer(LayerId id);
    [[nodiscard]] const Item* find_item(ItemId id) const;
    [[nodiscard]] LayerId unused_layer_id() const;
};

// Controls do not blend as a whole: numbers do, everything else holds.
inline ControlValue mix(const ControlValue& a, const ControlValue& b, double t) {
    const double* from = std::get_if<double>(&a);
    const double* to = std::get_if<double>(&b);
    return from && to ? ControlValue(mix(*from, *to, t)) : a;
}
inline double way_between(const ControlValue& a, const ControlValue& b) {
    const double* from = std::get_if<double>(&a);
    const double* to = std::get_if<double>(&b);
    return from && to ? *to - *from : 0.0;
}
inline ControlValue along(const ControlValue& a, const ControlValue& b, double travelled, double way) {
    const double* from = std::get_if<double>(&a);
    return from && std::get_if<double>(&b) ? ControlValue(along(*from, 0.0, travelled, way)) : a;
}

}  // namespace zam::host
