#pragma once
// Names are recognised up to the end of the shorter one.
#include "effect/scene/layers.h"

namespace zam {

// True when both agree over their common length, so that either may be the beginning of the other.
inline bool AgreeOverCommonLength(const char* a, const char* b) {
    for (; *a && *b; ++a, ++b) {
        if (*a != *b) return false;
    }
    return true;
}

// Is this a reach light: a spot light whose name agrees with `base_name`?
inline A_Err IsReachLight(const AEGP_SuiteHandler& suites, AEGP_LayerH layer, const char* base_name,
                          bool* is) {
    *is = false;
    int type = kNoLight;
    if (const A_Err err = GetLightTypeOf(suites, suites.Layer8(), layer, &type)) return err;
    if (type != AEGP_LightType_SPOT) return A_Err_NONE;
    LayerName name;
    if (const A_Err err = GetLayerNameOf<WithLayer8>(suites, layer, &name)) return err;
    *is = AgreeOverCommonLength(name.text, base_name);
    return A_Err_NONE;
}

}  // namespace zam
