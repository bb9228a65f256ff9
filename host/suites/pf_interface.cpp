// From the effect to its layer, its time and its camera.
#include <cstring>

#include "host/composition/queries.h"
#include "host/suites/conversions.h"
#include "host/suites/serve.h"
#include "host/suites/tables.h"

namespace zam::host {
namespace {

A_Err get_effect_layer(PF_ProgPtr effect_ref, AEGP_LayerH* layer) {
    return serve("PFInterface.AEGP_GetEffectLayer", [&](Instance& in) {
        in.check(effect_ref);
        result(layer) = in.handle(in.effect_layer());
    });
}

A_Err get_new_effect(AEGP_PluginID, PF_ProgPtr effect_ref, AEGP_EffectRefH* effect) {
    return serve("PFInterface.AEGP_GetNewEffectForEffect", [&](Instance& in) {
        in.check(effect_ref);
        AEGP_EffectRefH& to = result(effect);
        to = in.lend_effect("AEGP_GetNewEffectForEffect");
    });
}

A_Err convert_effect_to_comp_time(PF_ProgPtr effect_ref, A_long value, A_u_long scale, A_Time* time) {
    return serve("PFInterface.AEGP_ConvertEffectToCompTime", [&](Instance& in) {
        in.check(effect_ref);
        const A_Time given{value, scale};
        result(time) = in.time(in.frame(in.effect_layer(), AEGP_LTimeMode_LayerTime, &given));
    });
}

A_Err get_effect_camera(PF_ProgPtr effect_ref, const A_Time* time, AEGP_LayerH* camera) {
    return serve("PFInterface.AEGP_GetEffectCamera", [&](Instance& in) {
        in.check(effect_ref);
        const Layer* found = active_camera(in.composition, in.frame(time));
        result(camera) = found ? in.handle(*found) : nullptr;
    });
}

A_Err get_effect_camera_matrix(PF_ProgPtr effect_ref, const A_Time* time, A_Matrix4* matrix,
                               A_FpLong* distance, A_short* width, A_short* height) {
    return serve("PFInterface.AEGP_GetEffectCameraMatrix", [&](Instance& in) {
        in.check(effect_ref);
        const double frame = in.frame(time);
        const Layer* camera = active_camera(in.composition, frame);
        result(matrix) = interface_matrix(camera ? in.world_from_layer(*camera, frame)
                                                 : default_camera_matrix(in.composition));
        result(distance) = camera ? camera->camera.zoom.at(frame) : default_camera_distance(in.composition);
        result(width) = static_cast<A_short>(in.composition.width);
        result(height) = static_cast<A_short>(in.composition.height);
    });
}

}  // namespace

const AEGP_PFInterfaceSuite1 kPfInterfaceSuite1 = {
    .AEGP_GetEffectLayer = get_effect_layer,
    .AEGP_GetNewEffectForEffect = get_new_effect,
    .AEGP_ConvertEffectToCompTime = convert_effect_to_comp_time,
    .AEGP_GetEffectCamera = get_effect_camera,
    .AEGP_GetEffectCameraMatrix = get_effect_camera_matrix,
};

}  // namespace zam::host
