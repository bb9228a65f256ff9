// Queries about single lights that the renderer does not need.
#include <cstring>

#include "effect/scene/layers.h"
#include "effect/scene/lights.h"
#include "effect/scene/names.h"

namespace zam {
namespace {

// The topmost light layer of this name; type and layer stay as they are when there is none.
A_Err FindLightByName(const AEGP_SuiteHandler& suites, PF_InData* in_data, const char* name, int* light_type,
                      AEGP_LayerH* found) {
    AEGP_LayerH effect_layer = nullptr;
    AEGP_CompH comp = nullptr;
    if (const A_Err err = GetEffectLayerAndComp<WithLayer5>(suites, in_data, &effect_layer, &comp))
        return err;
    return ForEachLayer<WithLayer5>(suites, comp, [&](AEGP_LayerH layer, A_long) -> A_Err {
        int type = kNoLight;
        if (const A_Err err = GetLightTypeOf(suites, suites.Layer5(), layer, &type)) return err;
        if (*found || type == kNoLight) return A_Err_NONE;
        LayerName own;
        if (const A_Err err = GetLayerNameOf<WithLayer5>(suites, layer, &own)) return err;
        if (std::strcmp(own.text, name) == 0) {
            *light_type = type;
            *found = layer;
        }
        return A_Err_NONE;
    });
}

struct FoundLight {
    AEGP_LayerH layer = nullptr;  // null when no light has the name
    A_Time comp_time{0, 1};
    A_Matrix4 world{};
};

A_Err FindLightAt(const AEGP_SuiteHandler& suites, PF_InData* in_data, A_long what_time, A_u_long time_scale,
                  const char* name, int* light_type, FoundLight* light) {
    *light_type = kNoLight;
    if (const A_Err err = GetCompTime(suites, in_data, what_time, time_scale, &light->comp_time)) return err;
    if (const A_Err err = FindLightByName(suites, in_data, name, light_type, &light->layer)) return err;
    if (!light->layer) return A_Err_NONE;
    return suites.Layer5()->AEGP_GetLayerToWorldXform(light->layer, &light->comp_time, &light->world);
}

}  // namespace

ZAM_EXPORT A_Err GetLightByName(PF_InData* in_data, A_long what_time, A_u_long time_scale, const char* name,
                                int* light_type, float* position, float* axes, float* color,
                                float* cone_angle, float* cone_feather) {
    const AEGP_SuiteHandler suites(in_data->pica_basicP);
    FoundLight light;
    if (const A_Err err = FindLightAt(suites, in_data, what_time, time_scale, name, light_type, &light))
        return err;
    if (!light.layer) return A_Err_NONE;
    for (int i = 0; i < 3; ++i) {
        position[i] = static_cast<float>(light.world.mat[3][i]);
        for (int axis = 0; axis < 3; ++axis)
            axes[3 * axis + i] = static_cast<float>(light.world.mat[axis][i]);
    }
    AEGP_StreamVal value{};
    if (const A_Err err = GetStreamAt(suites, light.layer, AEGP_LayerStream_COLOR, light.comp_time, &value))
        return err;
    color[0] = static_cast<float>(value.color.redF);
    color[1] = static_cast<float>(value.color.greenF);
    color[2] = static_cast<float>(value.color.blueF);
    if (*light_type != AEGP_LightType_SPOT) return A_Err_NONE;
    if (const A_Err err =
            GetStreamAt(suites, light.layer, AEGP_LayerStream_CONE_ANGLE, light.comp_time, &value))
        return err;
    *cone_angle = static_cast<float>(value.one_d * kRadiansPerDegree);
    if (const A_Err err =
            GetStreamAt(suites, light.layer, AEGP_LayerStream_CONE_FEATHER, light.comp_time, &value))
        return err;
    *cone_feather = static_cast<float>(value.one_d * kPercent);
    return A_Err_NONE;
}

ZAM_EXPORT A_Err PGetLightPos(PF_InData* in_data, A_long what_time, A_u_long time_scale, const char* name,
                              int* light_type, float* x, float* y, float* z) {
    const AEGP_SuiteHandler suites(in_data->pica_basicP);
    FoundLight light;
    if (const A_Err err = FindLightAt(suites, in_data, what_time, time_scale, name, light_type, &light))
        return err;
    if (!light.layer) return A_Err_NONE;
    *x = static_cast<float>(light.world.mat[3][0]);
    *y = static_cast<float>(light.world.mat[3][1]);
    *z = static_cast<float>(light.world.mat[3][2]);
    return A_Err_NONE;
}

ZAM_EXPORT int PCheckLightExists(PF_InData* in_data, const char* name) {
    const AEGP_SuiteHandler suites(in_data->pica_basicP);
    AEGP_LayerH effect_layer = nullptr;
    AEGP_CompH comp = nullptr;
    if (GetEffectLayerAndComp<WithLayer5>(suites, in_data, &effect_layer, &comp)) return 0;
    bool exists = false;
    ForEachLayer<WithLayer5>(suites, comp, [&](AEGP_LayerH layer, A_long) -> A_Err {
        int type = kNoLight;
        if (const A_Err err = GetLightTypeOf(suites, suites.Layer5(), layer, &type)) return err;
        if (type == kNoLight) return A_Err_NONE;
        LayerName own;
        if (const A_Err err = GetLayerNameOf<WithLayer5>(suites, layer, &own)) return err;
        exists = exists || AgreeOverCommonLength(own.text, name);
        return A_Err_NONE;
    });
    return exists ? 1 : 0;
}

}  // namespace zam
