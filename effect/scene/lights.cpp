#include "effect/scene/lights.h"

#include <cstring>

#include "effect/scene/layers.h"

namespace zam {
namespace {

struct Filters {
    bool use_on, use_off;
    const char* prefix;  // null: any name
};

bool StartsWith(const LayerName& name, const char* prefix) {
    return std::strncmp(name.text, prefix, std::strlen(prefix)) == 0;
}

void ReadNumber(const AEGP_SuiteHandler& suites, AEGP_LayerH layer, AEGP_LayerStream stream,
                const A_Time& comp_time, double factor, double* field) {
    AEGP_StreamVal value{};
    if (!GetStreamAt(suites, layer, stream, comp_time, &value)) *field = value.one_d * factor;
}

// Is the light in the composition at this time? Its out point still counts.
bool IsThereAt(const AEGP_SuiteHandler& suites, AEGP_LayerH layer, const A_Time& comp_time) {
    A_Time in_point, duration;
    const AEGP_LayerSuite1* layers = suites.Layer5();
    if (layers->AEGP_GetLayerInPoint(layer, AEGP_LTimeMode_CompTime, &in_point)) in_point = {0, 1};
    if (layers->AEGP_GetLayerDuration(layer, AEGP_LTimeMode_CompTime, &duration)) duration = {0, 1};
    const double now = Seconds(comp_time), from = Seconds(in_point);
    return !(from > now) && !(now > from + Seconds(duration));
}

// Not inline: it happens once in a walk, and the walk needs the registers.
[[gnu::noinline]] A_Err DescribeLight(const AEGP_SuiteHandler& suites, AEGP_LayerH layer,
                                      const A_Time& comp_time, bool spot, const Filters& filters,
                                      LightDescription* light) {
    LayerName name;
    const bool name_read = !GetLayerNameOf<WithLayer5>(suites, layer, &name);
    const bool name_fits = !filters.prefix || (name_read && StartsWith(name, filters.prefix));

    AEGP_StreamVal value{};
    if (!GetStreamAt(suites, layer, AEGP_LayerStream_COLOR, comp_time, &value)) {
        light->color[0] = value.color.redF;
        light->color[1] = value.color.greenF;
        light->color[2] = value.color.blueF;
    }
    A_Matrix4 world{};
    if (const A_Err err = suites.Layer5()->AEGP_GetLayerToWorldXform(layer, &comp_time, &world)) return err;
    for (int i = 0; i < 3; ++i) {
        light->pos[i] = world.mat[3][i];
        if (spot) light->dir[i] = world.mat[2][i];
    }
    if (spot) {
        ReadNumber(suites, layer, AEGP_LayerStream_CONE_ANGLE, comp_time, kRadiansPerDegree,
                   &light->coneAngle);
        ReadNumber(suites, layer, AEGP_LayerStream_CONE_FEATHER, comp_time, kPercent, &light->coneFeather);
    }
    ReadNumber(suites, layer, AEGP_LayerStream_INTENSITY, comp_time, kPercent, &light->intensity);
    ReadNumber(suites, layer, AEGP_LayerStream_SHADOW_DARKNESS, comp_time, kPercent, &light->shadowDarkness);
    ReadNumber(suites, layer, AEGP_LayerStream_SHADOW_DIFFUSION, comp_time, 1.0, &light->shadowDiffusion);

    A_Boolean on = false;
    if (suites.Layer5()->AEGP_IsLayerVideoReallyOn(layer, &on)) on = false;
    const bool wanted = on ? filters.use_on : filters.use_off;
    if (!wanted || !name_fits) light->intensity = 0.0;
    if (light->intensity > 0.0 && !IsThereAt(suites, layer, comp_time)) light->intensity = 0.0;
    return A_Err_NONE;
}

A_Err GetLight(PF_InData* in_data, A_long what_time, A_u_long time_scale, LightDescription* light, int index,
               int light_type, const Filters& filters) {
    const AEGP_SuiteHandler suites(in_data->pica_basicP);
    A_Time comp_time;
    if (const A_Err err = GetCompTime(suites, in_data, what_time, time_scale, &comp_time)) return err;
    AEGP_LayerH effect_layer = nullptr;
    AEGP_CompH comp = nullptr;
    if (const A_Err err = GetEffectLayerAndComp<WithLayer5>(suites, in_data, &effect_layer, &comp))
        return err;
    const AEGP_LayerSuite1* layers = suites.Layer5();
    int place = -1;
    return ForEachLayer<WithLayer5>(suites, comp, [&](AEGP_LayerH layer, A_long) {
        int type = kNoLight;
        if (const A_Err err = GetLightTypeOf(suites, layers, layer, &type)) return err;
        if (type != light_type || ++place != index) return A_Err{A_Err_NONE};
        return DescribeLight(suites, layer, comp_time, light_type == AEGP_LightType_SPOT, filters, light);
    });
}

}  // namespace

ZAM_EXPORT int GetNoLights(PF_InData* in_data, int light_type) {
    const AEGP_SuiteHandler suites(in_data->pica_basicP);
    AEGP_LayerH effect_layer = nullptr;
    AEGP_CompH comp = nullptr;
    if (GetEffectLayerAndComp<WithLayer5>(suites, in_data, &effect_layer, &comp)) return 0;
    int count = 0;
    ForEachLayer<WithLayer5>(suites, comp, [&](AEGP_LayerH layer, A_long) {
        int type = kNoLight;
        const A_Err err = GetLightTypeOf(suites, suites.Layer5(), layer, &type);
        if (!err && type == light_type) ++count;
        return err;
    });
    return count;
}

ZAM_EXPORT A_Err GetPointLight(PF_InData* in_data, A_long what_time, A_u_long time_scale,
                               LightDescription* light, int index, bool use_on, bool use_off,
                               const char* prefix) {
    return GetLight(in_data, what_time, time_scale, light, index, AEGP_LightType_POINT,
                    {use_on, use_off, prefix});
}

ZAM_EXPORT A_Err GetSpotLight(PF_InData* in_data, A_long what_time, A_u_long time_scale,
                              LightDescription* light, int index, bool use_on, bool use_off,
                              const char* prefix) {
    return GetLight(in_data, what_time, time_scale, light, index, AEGP_LightType_SPOT,
                    {use_on, use_off, prefix});
}

}  // namespace zam
