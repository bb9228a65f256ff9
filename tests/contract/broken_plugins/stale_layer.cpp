// Uses a layer handle from an earlier command.
#include "hostapi/layer_suites.h"
#include "hostapi/scene_suites.h"
#include "tests/contract/broken_plugins/well_behaved.h"

static AEGP_LayerH kept = nullptr;

BROKEN_AT(PF_Cmd_RENDER) {
    const auto* pf = broken::acquire<AEGP_PFInterfaceSuite1>(in, "AEGP PF Interface Suite", 1);
    const auto* layers = broken::acquire<AEGP_LayerSuite1>(in, "AEGP Layer Suite", 5);
    A_char name[32];
    if (kept && layers->AEGP_GetLayerName(kept, name, nullptr) == PF_Err_NONE)
        return PF_Err_INTERNAL_STRUCT_DAMAGED;
    pf->AEGP_GetEffectLayer(in->effect_ref, &kept);
    in->pica_basicP->ReleaseSuite("AEGP PF Interface Suite", 1);
    in->pica_basicP->ReleaseSuite("AEGP Layer Suite", 5);
    return broken::render(in, output);
}
