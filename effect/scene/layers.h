#pragma once
// Walking the layers of the effect's composition, with either version of the layer suite.
#include "effect/scene/suites.h"

namespace zam {

inline constexpr int kNoLight = -1;

// Which layer suite a walk uses.
struct WithLayer5 {
    static const AEGP_LayerSuite1* of(const AEGP_SuiteHandler& suites) { return suites.Layer5(); }
};
struct WithLayer8 {
    static const AEGP_LayerSuite3* of(const AEGP_SuiteHandler& suites) { return suites.Layer8(); }
};

// A host that says "success" and hands out nothing.
inline constexpr A_Err kNothingThere = A_Err_GENERIC;

// Effect time as composition time.
inline A_Err GetCompTime(const AEGP_SuiteHandler& suites, PF_InData* in_data, A_long what_time,
                         A_u_long time_scale, A_Time* comp_time) {
    *comp_time = {0, 1};
    return suites.PFInterface1()->AEGP_ConvertEffectToCompTime(in_data->effect_ref, what_time, time_scale,
                                                               comp_time);
}

// The layer that carries the effect and its composition.
template <class With>
A_Err GetEffectLayerAndComp(const AEGP_SuiteHandler& suites, PF_InData* in_data, AEGP_LayerH* layer,
                            AEGP_CompH* comp) {
    if (const A_Err err = suites.PFInterface1()->AEGP_GetEffectLayer(in_data->effect_ref, layer)) return err;
    if (!*layer) return kNothingThere;
    if (const A_Err err = With::of(suites)->AEGP_GetLayerParentComp(*layer, comp)) return err;
    return *comp ? A_Err{A_Err_NONE} : kNothingThere;
}

// Calls visit(layer, index) from the top of the stack down; stops at the first error, be it the host's or the
// visitor's, and returns it. Null layers are passed over. There is one walk per light: what a visit does at every
// layer should stay in registers.
template <class With, class Visit>
[[gnu::always_inline]] inline A_Err ForEachLayer(const AEGP_SuiteHandler& suites, AEGP_CompH comp,
                                                 Visit visit) {
    const auto* layers = With::of(suites);
    A_long num_layers = 0;
    if (const A_Err err = layers->AEGP_GetCompNumLayers(comp, &num_layers)) return err;
    const A_long count = num_layers;
    for (A_long index = 0; index < count; ++index) {
        AEGP_LayerH place = nullptr;
        if (const A_Err err = layers->AEGP_GetCompLayerByIndex(comp, index, &place)) return err;
        const AEGP_LayerH layer = place;
        if (!layer) continue;
        if (const A_Err err = visit(layer, index)) return err;
    }
    return A_Err_NONE;
}

// The layer's light type, kNoLight for a layer of another kind. `layers` is either version of the layer suite.
template <class LayerSuite>
[[gnu::always_inline]] inline A_Err GetLightTypeOf(const AEGP_SuiteHandler& suites, const LayerSuite* layers,
                                                   AEGP_LayerH layer, int* type) {
    *type = kNoLight;
    AEGP_ObjectType object = AEGP_ObjectType_NONE;
    if (const A_Err err = layers->AEGP_GetLayerObjectType(layer, &object)) return err;
    if (object != AEGP_ObjectType_LIGHT) return A_Err_NONE;
    AEGP_LightType light_type = 0;
    if (const A_Err err = suites.Light1()->AEGP_GetLightType(layer, &light_type)) return err;
    *type = static_cast<int>(light_type);
    return A_Err_NONE;
}

// A layer's own name, always terminated; empty when it has none.
struct LayerName {
    A_char text[AEGP_MAX_LAYER_NAME_SIZE] = {};
};
template <class With>
A_Err GetLayerNameOf(const AEGP_SuiteHandler& suites, AEGP_LayerH layer, LayerName* name) {
    *name = {};
    const A_Err err = With::of(suites)->AEGP_GetLayerName(layer, name->text, nullptr);
    name->text[AEGP_MAX_LAYER_NAME_SIZE - 1] = '\0';
    return err;
}

// A layer's stream at a composition time, after expressions. `value` is written only on success.
inline A_Err GetStreamAt(const AEGP_SuiteHandler& suites, AEGP_LayerH layer, AEGP_LayerStream stream,
                         const A_Time& comp_time, AEGP_StreamVal* value) {
    AEGP_StreamVal read{};
    const A_Err err = suites.Stream4()->AEGP_GetLayerStreamValue(layer, stream, AEGP_LTimeMode_CompTime,
                                                                 &comp_time, false, &read, nullptr);
    if (!err) *value = read;
    return err;
}

inline double Seconds(const A_Time& time) {
    return static_cast<double>(time.value) / static_cast<double>(time.scale);
}

}  // namespace zam
