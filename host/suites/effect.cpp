// The effect as a layer sees it: one effect on one layer.
#include "host/suites/serve.h"
#include "host/suites/tables.h"

namespace zam::host {
namespace {

A_Err get_layer_num_effects(AEGP_LayerH layer, A_long* count) {
    return serve("Effect.AEGP_GetLayerNumEffects", [&](Instance& in) {
        result(count) = in.layer(layer).id == in.composition.effect.layer ? 1 : 0;
    });
}

A_Err get_layer_effect(AEGP_PluginID, AEGP_LayerH layer, AEGP_EffectIndex index, AEGP_EffectRefH* effect) {
    return serve("Effect.AEGP_GetLayerEffectByIndex", [&](Instance& in) {
        if (in.layer(layer).id != in.composition.effect.layer || index != 0)
            throw Refusal{PF_Err_INVALID_INDEX};
        AEGP_EffectRefH& to = result(effect);
        to = in.lend_effect("AEGP_GetLayerEffectByIndex");
    });
}

A_Err dispose_effect(AEGP_EffectRefH effect) {
    return serve(
        "Effect.AEGP_DisposeEffect",
        [&](Instance& in) {
            in.check(effect);
            (void)in.ledger.give_back(Loan::effect, reinterpret_cast<std::uintptr_t>(effect));
        },
        Door::giving_back);
}

}  // namespace

const AEGP_EffectSuite1 kEffectSuite1 = {
    .AEGP_GetLayerNumEffects = get_layer_num_effects,
    .AEGP_GetLayerEffectByIndex = get_layer_effect,
    .AEGP_GetInstalledKeyFromLayerEffect = unserved<"Effect.AEGP_GetInstalledKeyFromLayerEffect">,
    .AEGP_GetEffectParamUnionByIndex = unserved<"Effect.AEGP_GetEffectParamUnionByIndex">,
    .AEGP_GetEffectFlags = unserved<"Effect.AEGP_GetEffectFlags">,
    .AEGP_SetEffectFlags = unserved<"Effect.AEGP_SetEffectFlags">,
    .AEGP_ReorderEffect = unserved<"Effect.AEGP_ReorderEffect">,
    .AEGP_EffectCallGeneric = unserved<"Effect.AEGP_EffectCallGeneric">,
    .AEGP_DisposeEffect = dispose_effect,
    .AEGP_ApplyEffect = unserved<"Effect.AEGP_ApplyEffect">,
    .AEGP_DeleteLayerEffect = unserved<"Effect.AEGP_DeleteLayerEffect">,
    .AEGP_GetNumInstalledEffects = unserved<"Effect.AEGP_GetNumInstalledEffects">,
    .AEGP_GetNextInstalledEffect = unserved<"Effect.AEGP_GetNextInstalledEffect">,
    .AEGP_GetEffectName = unserved<"Effect.AEGP_GetEffectName">,
    .AEGP_GetEffectMatchName = unserved<"Effect.AEGP_GetEffectMatchName">,
    .AEGP_GetEffectCategory = unserved<"Effect.AEGP_GetEffectCategory">,
};

}  // namespace zam::host
