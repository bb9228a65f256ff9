#include "effect/scene/reach.h"

#include <cstring>

#include "effect/scene/layers.h"
#include "effect/scene/names.h"
#include "effect/scene/picked_layer.h"

namespace zam {
namespace {

constexpr char kReachName[] = "Zam Reach";

// A reach light that is parented to the layer with this id?
A_Err IsReachLightOf(const AEGP_SuiteHandler& suites, AEGP_LayerH layer, const char* base_name,
                     AEGP_LayerIDVal parent_id, bool* is) {
    if (const A_Err err = IsReachLight(suites, layer, base_name, is)) return err;
    if (!*is) return A_Err_NONE;
    *is = false;
    AEGP_LayerH parent = nullptr;
    if (const A_Err err = suites.Layer8()->AEGP_GetLayerParent(layer, &parent)) return err;
    if (!parent) return A_Err_NONE;
    AEGP_LayerIDVal id = 0;
    if (const A_Err err = suites.Layer8()->AEGP_GetLayerID(parent, &id)) return err;
    *is = id == parent_id;
    return A_Err_NONE;
}

struct Found {
    AEGP_LayerH target = nullptr;  // the picked layer, when it will do
    AEGP_LayerH light = nullptr;   // its reach light
};

A_Err FindTargetAndLight(const AEGP_SuiteHandler& suites, AEGP_LayerH effect_layer, AEGP_CompH comp,
                         const char* base_name, AEGP_LayerIDVal picked, Found* found) {
    return ForEachLayer<WithLayer8>(suites, comp, [&](AEGP_LayerH layer, A_long) -> A_Err {
        AEGP_LayerIDVal id = 0;
        if (const A_Err err = suites.Layer8()->AEGP_GetLayerID(layer, &id)) return err;
        if (id != picked) {
            bool is = false;
            if (const A_Err err = IsReachLightOf(suites, layer, base_name, picked, &is)) return err;
            if (is) found->light = layer;
            return A_Err_NONE;
        }
        A_Boolean three_d = false;
        if (const A_Err err = suites.Layer8()->AEGP_IsLayer3D(layer, &three_d)) return err;
        AEGP_LayerIDVal own_id = 0;
        if (const A_Err err = suites.Layer8()->AEGP_GetLayerID(effect_layer, &own_id)) return err;
        if (three_d && id != own_id) found->target = layer;
        return A_Err_NONE;
    });
}

// The layer's own name, else its source's.
A_Err GetShownName(const AEGP_SuiteHandler& suites, AEGP_LayerH layer, LayerName* name) {
    if (const A_Err err = GetLayerNameOf<WithLayer8>(suites, layer, name)) return err;
    if (name->text[0]) return A_Err_NONE;
    AEGP_ItemH source = nullptr;
    if (const A_Err err = suites.Layer8()->AEGP_GetLayerSourceItem(layer, &source)) return err;
    if (!source) return A_Err_NONE;
    const A_Err err = suites.Item3()->AEGP_GetItemName(source, name->text);
    name->text[sizeof(name->text) - 1] = '\0';
    return err;
}

// "base_name [layer_name]" through the host's sprintf, cut to what a layer name holds.
LayerName FormatReachName(PF_InData* in_data, const char* base_name, const LayerName& layer_name) {
    LayerName base;
    std::strncpy(base.text, base_name, sizeof(base.text) - 1);
    A_char text[255] = {};
    in_data->utils->ansi.sprintf(text, "%s [%s]", base.text, layer_name.text);
    LayerName name;
    std::memcpy(name.text, text, sizeof(name.text) - 1);
    return name;
}

// A new spot light at layer time 0, whatever type the host makes by default.
A_Err CreateReachLight(const AEGP_SuiteHandler& suites, AEGP_CompH comp, const LayerName& name,
                       AEGP_LayerH* light) {
    const A_FloatPoint centre{0.0, 0.0};
    const A_Time start{0, 1};
    if (const A_Err err = suites.Comp9()->AEGP_CreateLightInComp(name.text, centre, comp, light)) return err;
    if (!*light) return kNothingThere;
    if (const A_Err err = suites.Layer8()->AEGP_SetLayerOffset(*light, &start)) return err;
    AEGP_LightType type = AEGP_LightType_SPOT;
    if (const A_Err err = suites.Light1()->AEGP_GetLightType(*light, &type)) return err;
    if (type == AEGP_LightType_SPOT) return A_Err_NONE;
    return suites.Light2()->AEGP_SetLightType(*light, AEGP_LightType_SPOT);
}

// Sets the stream unless the user has animated it.
A_Err SetUnlessAnimated(const AEGP_SuiteHandler& suites, AEGP_LayerH layer, AEGP_LayerStream which,
                        const AEGP_StreamVal& constant) {
    const AEGP_KeyframeSuite1* keyframes = suites.Keyframe1();
    AEGP_StreamRefH stream = nullptr;
    if (const A_Err err = suites.Stream4()->AEGP_GetNewLayerStream(kPluginId, layer, which, &stream))
        return err;
    if (!stream) return kNothingThere;
    A_long count = 0;
    A_Err err = keyframes->AEGP_GetStreamNumKFs(stream, &count);
    if (!err && count == 0) {
        AEGP_StreamValue value{};
        value.streamH = stream;
        value.val = constant;
        err = suites.Stream4()->AEGP_SetStreamValue(kPluginId, stream, &value);
    }
    const A_Err dispose_err = suites.Stream4()->AEGP_DisposeStream(stream);
    return err ? err : dispose_err;
}

// Dark, in the target's corner, hidden, shy, and last of all locked.
A_Err SetUpReachLight(const AEGP_SuiteHandler& suites, AEGP_LayerH light, AEGP_LayerH target) {
    AEGP_StreamVal zero{};
    if (const A_Err err = SetUnlessAnimated(suites, light, AEGP_LayerStream_INTENSITY, zero)) return err;
    if (const A_Err err = SetUnlessAnimated(suites, light, AEGP_LayerStream_POSITION, zero)) return err;
    const AEGP_LayerSuite3* layers = suites.Layer8();
    if (const A_Err err = layers->AEGP_SetLayerParent(light, target)) return err;
    if (const A_Err err = layers->AEGP_SetLayerFlag(light, AEGP_LayerFlag_VIDEO_ACTIVE, false)) return err;
    if (const A_Err err = layers->AEGP_SetLayerFlag(light, AEGP_LayerFlag_SHY, true)) return err;
    return layers->AEGP_SetLayerFlag(light, AEGP_LayerFlag_LOCKED, true);
}

A_Err NameOrCreateReachLight(const AEGP_SuiteHandler& suites, PF_InData* in_data, AEGP_CompH comp,
                             const char* base_name, Found found) {
    LayerName target_name;
    if (const A_Err err = GetShownName(suites, found.target, &target_name)) return err;
    const LayerName name = FormatReachName(in_data, base_name, target_name);
    if (found.light) {
        if (const A_Err err = suites.Layer8()->AEGP_SetLayerName(found.light, name.text)) return err;
    } else {
        if (const A_Err err = CreateReachLight(suites, comp, name, &found.light)) return err;
    }
    return SetUpReachLight(suites, found.light, found.target);
}

A_Err AddReachLight(PF_InData* in_data, int param_index, const char* base_name, AEGP_LayerIDVal* layer_id) {
    const AEGP_SuiteHandler suites(in_data->pica_basicP);
    AEGP_LayerH effect_layer = nullptr;
    AEGP_CompH comp = nullptr;
    if (const A_Err err = GetEffectLayerAndComp<WithLayer8>(suites, in_data, &effect_layer, &comp))
        return err;

    PickedLayerStream stream(suites);
    AEGP_LayerIDVal picked = 0;
    if (const A_Err err = stream.Open(in_data, param_index, &picked)) return err;
    if (picked == 0) return stream.Close();

    Found found;
    A_Err err = FindTargetAndLight(suites, effect_layer, comp, base_name, picked, &found);
    if (found.target) *layer_id = picked;
    const A_Err value_err = stream.CloseValue();
    if (!err) err = value_err;
    if (!err && found.target) err = NameOrCreateReachLight(suites, in_data, comp, base_name, found);
    const A_Err close_err = stream.Close();
    return err ? err : close_err;
}

double ThroughSinglePrecision(double value) { return static_cast<double>(static_cast<float>(value)); }

}  // namespace

ZAM_EXPORT A_Err AddControlLightIfNeeded(PF_InData* in_data, int param_index, AEGP_LayerIDVal* layer_id) {
    return AddReachLight(in_data, param_index, kReachName, layer_id);
}

ZAM_EXPORT A_Err PAddControlLightIfNeeded(PF_InData* in_data, int param_index, const char* base_name) {
    AEGP_LayerIDVal unused = 0;
    return AddReachLight(in_data, param_index, base_name, &unused);
}

ZAM_EXPORT A_Err GetControlLight(PF_InData* in_data, AEGP_LayerIDVal layer_id, A_long what_time,
                                 A_u_long time_scale, int* found, double* px, double* py, double* pz,
                                 double* nx, double* ny, double* nz) {
    *found = -1;
    const AEGP_SuiteHandler suites(in_data->pica_basicP);
    A_Time comp_time;
    if (const A_Err err = GetCompTime(suites, in_data, what_time, time_scale, &comp_time)) return err;
    AEGP_LayerH effect_layer = nullptr;
    AEGP_CompH comp = nullptr;
    if (const A_Err err = GetEffectLayerAndComp<WithLayer8>(suites, in_data, &effect_layer, &comp))
        return err;
    return ForEachLayer<WithLayer8>(suites, comp, [&](AEGP_LayerH layer, A_long) -> A_Err {
        bool is = false;
        if (const A_Err err = IsReachLightOf(suites, layer, kReachName, layer_id, &is)) return err;
        if (!is) return A_Err_NONE;
        A_Matrix4 world{};
        if (const A_Err err = suites.Layer8()->AEGP_GetLayerToWorldXform(layer, &comp_time, &world))
            return err;
        *px = ThroughSinglePrecision(world.mat[3][0]);
        *py = ThroughSinglePrecision(world.mat[3][1]);
        *pz = ThroughSinglePrecision(world.mat[3][2]);
        *nx = ThroughSinglePrecision(world.mat[2][0]);
        *ny = ThroughSinglePrecision(world.mat[2][1]);
        *nz = ThroughSinglePrecision(world.mat[2][2]);
        *found = 1;
        return A_Err_NONE;
    });
}

}  // namespace zam
