// Queries about reach lights and picked layers that the effect itself does not need.
#include "effect/scene/layers.h"
#include "effect/scene/names.h"
#include "effect/scene/picked_layer.h"
#include "effect/scene/reach.h"

namespace zam {
namespace {

// The layer at this index and the composition time.
A_Err GetLayerAt(const AEGP_SuiteHandler& suites, PF_InData* in_data, A_long what_time, A_u_long time_scale,
                 int index, AEGP_LayerH* layer, A_Time* comp_time) {
    if (const A_Err err = GetCompTime(suites, in_data, what_time, time_scale, comp_time)) return err;
    AEGP_LayerH effect_layer = nullptr;
    AEGP_CompH comp = nullptr;
    if (const A_Err err = GetEffectLayerAndComp<WithLayer8>(suites, in_data, &effect_layer, &comp))
        return err;
    if (const A_Err err = suites.Layer8()->AEGP_GetCompLayerByIndex(comp, index, layer)) return err;
    return *layer ? A_Err{A_Err_NONE} : kNothingThere;
}

A_Err GetPickedLayerSize(PF_InData* in_data, int param_index, float* width, float* height) {
    const AEGP_SuiteHandler suites(in_data->pica_basicP);
    AEGP_LayerH effect_layer = nullptr;
    AEGP_CompH comp = nullptr;
    if (const A_Err err = GetEffectLayerAndComp<WithLayer8>(suites, in_data, &effect_layer, &comp))
        return err;
    PickedLayerStream stream(suites);
    AEGP_LayerIDVal picked = 0;
    A_Err err = stream.Open(in_data, param_index, &picked);
    if (!err && picked != 0) {
        err = ForEachLayer<WithLayer8>(suites, comp, [&](AEGP_LayerH layer, A_long) -> A_Err {
            AEGP_LayerIDVal id = 0;
            if (const A_Err id_err = suites.Layer8()->AEGP_GetLayerID(layer, &id)) return id_err;
            if (id != picked) return A_Err_NONE;
            AEGP_ItemH source = nullptr;
            if (const A_Err item_err = suites.Layer8()->AEGP_GetLayerSourceItem(layer, &source))
                return item_err;
            if (!source) return A_Err_NONE;
            A_long w = 0, h = 0;
            if (const A_Err size_err = suites.Item3()->AEGP_GetItemDimensions(source, &w, &h))
                return size_err;
            *width = static_cast<float>(w);
            *height = static_cast<float>(h);
            return A_Err_NONE;
        });
    }
    const A_Err close_err = stream.Close();
    return err ? err : close_err;
}

}  // namespace

ZAM_EXPORT A_Err PGetControlLightIDX(PF_InData* in_data, int* index, const char* base_name) {
    *index = -1;
    const AEGP_SuiteHandler suites(in_data->pica_basicP);
    AEGP_LayerH effect_layer = nullptr;
    AEGP_CompH comp = nullptr;
    if (const A_Err err = GetEffectLayerAndComp<WithLayer8>(suites, in_data, &effect_layer, &comp))
        return err;
    return ForEachLayer<WithLayer8>(suites, comp, [&](AEGP_LayerH layer, A_long place) -> A_Err {
        bool is = false;
        if (const A_Err err = IsReachLight(suites, layer, base_name, &is)) return err;
        if (is && *index < 0) *index = place;
        return A_Err_NONE;
    });
}

ZAM_EXPORT A_Err PGetControlLightFromIDX(PF_InData* in_data, A_long what_time, A_u_long time_scale, int index,
                                         float* values) {
    const AEGP_SuiteHandler suites(in_data->pica_basicP);
    AEGP_LayerH layer = nullptr;
    A_Time comp_time;
    if (const A_Err err = GetLayerAt(suites, in_data, what_time, time_scale, index, &layer, &comp_time))
        return err;
    A_Matrix4 world{};
    if (const A_Err err = suites.Layer8()->AEGP_GetLayerToWorldXform(layer, &comp_time, &world)) return err;
    for (int i = 0; i < 3; ++i) {
        values[i] = static_cast<float>(world.mat[3][i]);
        values[3 + i] = static_cast<float>(world.mat[2][i]);
    }
    AEGP_StreamVal color{};
    if (const A_Err err = GetStreamAt(suites, layer, AEGP_LayerStream_COLOR, comp_time, &color)) return err;
    values[6] = static_cast<float>(color.color.redF);
    values[7] = static_cast<float>(color.color.greenF);
    values[8] = static_cast<float>(color.color.blueF);
    return A_Err_NONE;
}

ZAM_EXPORT A_Err PGetControlMatrixFromIDX(PF_InData* in_data, A_long what_time, A_u_long time_scale,
                                          int index, A_Matrix4* matrix) {
    const AEGP_SuiteHandler suites(in_data->pica_basicP);
    AEGP_LayerH layer = nullptr;
    A_Time comp_time;
    if (const A_Err err = GetLayerAt(suites, in_data, what_time, time_scale, index, &layer, &comp_time))
        return err;
    return suites.Layer8()->AEGP_GetLayerToWorldXform(layer, &comp_time, matrix);
}

ZAM_EXPORT A_Err GetLayerInfo(PF_InData* in_data, int param_index, float* width, float* height) {
    return GetPickedLayerSize(in_data, param_index, width, height);
}

ZAM_EXPORT A_Err GetLayerSize(PF_InData* in_data, int param_index, float* width, float* height) {
    *width = 0.0F;
    *height = 0.0F;
    return GetPickedLayerSize(in_data, param_index, width, height);
}

ZAM_EXPORT A_Err GetLayerSizeAndType(PF_InData* in_data, int param_index, float* width, float* height) {
    return GetPickedLayerSize(in_data, param_index, width, height);
}

}  // namespace zam
