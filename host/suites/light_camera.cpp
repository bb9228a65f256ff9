// Kinds of lights, and the default view.
#include "host/composition/queries.h"
#include "host/suites/serve.h"
#include "host/suites/tables.h"

namespace zam::host {
namespace {

Layer& layer_of_kind(Instance& in, AEGP_LayerH handle, LayerKind kind) {
    Layer& layer = in.layer(handle);
    if (layer.kind != kind) throw Refusal{A_Err_PARAMETER};
    return layer;
}

[[gnu::noinline]] A_Err serve_light_type(AEGP_LayerH layer, AEGP_LightType* type) {
    return serve("Light.AEGP_GetLightType", [&](Instance& in) {
        const LayerHandles::Facts& facts = in.facts(layer);
        if (facts.object_type != AEGP_ObjectType_LIGHT) throw Refusal{A_Err_PARAMETER};
        result(type) = facts.light_type;
    });
}

A_Err get_light_type(AEGP_LayerH layer, AEGP_LightType* type) {
    const LayerHandles& layers = Instance::layers_at_hand();
    if (!layers.at_hand(layer) || !type || layers[layer].object_type != AEGP_ObjectType_LIGHT) [[unlikely]]
        return serve_light_type(layer, type);
    *type = layers[layer].light_type;
    return A_Err_NONE;
}

A_Err set_light_type(AEGP_LayerH layer, AEGP_LightType type) {
    return serve("Light.AEGP_SetLightType", [&](Instance& in) {
        in.must_be_changeable();
        Layer& light = layer_of_kind(in, layer, LayerKind::light);
        if (type > AEGP_LightType_AMBIENT) throw Refusal{A_Err_PARAMETER};
        light.light.type = static_cast<LightType>(type);
        in.changed();
    });
}

A_Err get_camera_type(AEGP_LayerH layer, AEGP_CameraType* type) {
    return serve("Camera.AEGP_GetCameraType", [&](Instance& in) {
        (void)layer_of_kind(in, layer, LayerKind::camera);
        result(type) = AEGP_CameraType_PERSPECTIVE;
    });
}

A_Err get_default_distance(AEGP_CompH comp, A_FpLong* distance) {
    return serve("Camera.AEGP_GetDefaultCameraDistanceToImagePlane", [&](Instance& in) {
        in.check(comp);
        result(distance) = default_camera_distance(in.composition);
    });
}

A_Err get_film_size(AEGP_LayerH layer, AEGP_FilmSizeUnits* units, A_FpLong* size) {
    return serve("Camera.AEGP_GetCameraFilmSize", [&](Instance& in) {
        (void)layer_of_kind(in, layer, LayerKind::camera);
        result(units) = AEGP_FilmSizeUnits_HORIZONTAL;
        result(size) = 36.0;  // millimetres
    });
}

}  // namespace

const AEGP_LightSuite1 kLightSuite1 = {.AEGP_GetLightType = get_light_type};

const AEGP_LightSuite2 kLightSuite2 = {
    .AEGP_GetLightType = get_light_type,
    .AEGP_SetLightType = set_light_type,
};

const AEGP_CameraSuite2 kCameraSuite2 = {
    .AEGP_GetCamera = unserved<"Camera.AEGP_GetCamera">,
    .AEGP_GetCameraType = get_camera_type,
    .AEGP_GetDefaultCameraDistanceToImagePlane = get_default_distance,
    .AEGP_GetCameraFilmSize = get_film_size,
    .AEGP_SetCameraFilmSize = unserved<"Camera.AEGP_SetCameraFilmSize">,
};

}  // namespace zam::host
