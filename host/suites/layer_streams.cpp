#include "host/suites/layer_streams.h"

#include "host/suites/conversions.h"

namespace zam::host {
namespace {

template <class... Case>
struct Cases : Case... {
    using Case::operator()...;
};
template <class... Case>
Cases(Case...) -> Cases<Case...>;

std::optional<LayerStreamData> light_stream(Layer& layer, AEGP_LayerStream stream) {
    LightSettings& light = layer.light;
    switch (stream) {
        case AEGP_LayerStream_INTENSITY:
            return LayerStreamData{&light.intensity};
        case AEGP_LayerStream_COLOR:
            return LayerStreamData{&light.color, AEGP_StreamType_COLOR};
        case AEGP_LayerStream_CONE_ANGLE:
            return LayerStreamData{&light.cone_angle};
        case AEGP_LayerStream_CONE_FEATHER:
            return LayerStreamData{&light.cone_feather};
        case AEGP_LayerStream_SHADOW_DARKNESS:
            return LayerStreamData{&light.shadow_darkness};
        case AEGP_LayerStream_SHADOW_DIFFUSION:
            return LayerStreamData{&light.shadow_diffusion};
        case AEGP_LayerStream_CASTS_SHADOWS:
            return LayerStreamData{&light.casts_shadows};
        case AEGP_LayerStream_LIGHT_FALLOFF_TYPE:
            return LayerStreamData{&light.falloff};
        case AEGP_LayerStream_LIGHT_FALLOFF_START:
            return LayerStreamData{&light.falloff_start};
        case AEGP_LayerStream_LIGHT_FALLOFF_DISTANCE:
            return LayerStreamData{&light.falloff_distance};
        default:
            return std::nullopt;
    }
}

std::optional<LayerStreamData> image_stream(Layer& layer, AEGP_LayerStream stream) {
    switch (stream) {
        case AEGP_LayerStream_ANCHORPOINT:
            return LayerStreamData{&layer.transform.anchor, AEGP_StreamType_ThreeD_SPATIAL};
        case AEGP_LayerStream_SCALE:
            return LayerStreamData{&layer.transform.scale, AEGP_StreamType_ThreeD};
        case AEGP_LayerStream_OPACITY:
            return LayerStreamData{100.0};
        default:
            return std::nullopt;
    }
}

}  // namespace

std::optional<LayerStreamData> find_stream(Layer& layer, AEGP_LayerStream stream) {
    Transform& t = layer.transform;
    switch (stream) {
        case AEGP_LayerStream_POSITION:
            return LayerStreamData{&t.position, AEGP_StreamType_ThreeD_SPATIAL};
        case AEGP_LayerStream_ROTATION:
            return LayerStreamData{&t.rotation_z};
        case AEGP_LayerStream_ROTATE_X:
            return LayerStreamData{&t.rotation_x};
        case AEGP_LayerStream_ROTATE_Y:
            return LayerStreamData{&t.rotation_y};
        case AEGP_LayerStream_ORIENTATION:
            return LayerStreamData{&t.orientation, AEGP_StreamType_ThreeD};
        default:
            break;
    }
    const bool is_light = layer.kind == LayerKind::light, is_camera = layer.kind == LayerKind::camera;
    if (!is_light && !is_camera) return image_stream(layer, stream);
    if (stream == AEGP_LayerStream_ANCHORPOINT && t.point_of_interest) {
        return LayerStreamData{&*t.point_of_interest, AEGP_StreamType_ThreeD_SPATIAL};
    }
    if (is_light) return light_stream(layer, stream);
    if (stream == AEGP_LayerStream_ZOOM) return LayerStreamData{&layer.camera.zoom};
    return std::nullopt;
}

AEGP_StreamVal value_at(const StreamData& data, double frame) {
    AEGP_StreamVal value{};
    std::visit(
        Cases{[&](Animated<double>* number) { value.one_d = number->at(frame); },
              [&](Animated<Vec3>* point) { value.three_d = interface_value(point->at(frame)); },
              [&](Animated<Color>* color) { value.color = interface_value(color->at(frame)); },
              [&](bool* on) { value.one_d = *on ? 1.0 : 0.0; }, [&](double fixed) { value.one_d = fixed; }},
        data);
    return value;
}

A_long keyframes(const StreamData& data) {
    return std::visit(
        Cases{[](bool*) -> A_long { return AEGP_NumKF_NO_DATA; }, [](double) -> A_long { return 0; },
              [](auto* animated) { return static_cast<A_long>(animated->keys.size()); }},
        data);
}

std::optional<double> keyframe_frame(const StreamData& data, A_long index) {
    if (index < 0 || index >= keyframes(data)) return std::nullopt;
    const auto place = static_cast<std::size_t>(index);
    return std::visit(Cases{[](bool*) { return 0.0; }, [](double) { return 0.0; },
                            [&](auto* animated) { return animated->keys[place].frame; }},
                      data);
}

bool set_value(const StreamData& data, const AEGP_StreamVal& value) {
    const auto set = [](auto& animated, auto constant) {
        if (animated.varies()) return false;
        animated.constant = constant;
        return true;
    };
    return std::visit(Cases{[&](Animated<double>* number) { return set(*number, value.one_d); },
                            [&](Animated<Vec3>* point) { return set(*point, from_interface(value.three_d)); },
                            [&](Animated<Color>* color) { return set(*color, from_interface(value.color)); },
                            [&](bool* on) {
                                *on = value.one_d != 0.0;
                                return true;
                            },
                            [](double) { return false; }},
                      data);
}

}  // namespace zam::host
