// Keeps an effect reference, a stream and its value.
#include "hostapi/scene_suites.h"
#include "hostapi/stream_suites.h"
#include "tests/contract/broken_plugins/well_behaved.h"

BROKEN_AT(PF_Cmd_UPDATE_PARAMS_UI) {
    const auto* pf = broken::acquire<AEGP_PFInterfaceSuite1>(in, "AEGP PF Interface Suite", 1);
    const auto* streams = broken::acquire<AEGP_StreamSuite1>(in, "AEGP Stream Suite", 4);
    AEGP_EffectRefH effect = nullptr;
    AEGP_StreamRefH stream = nullptr;
    AEGP_StreamValue value{};
    const A_Time start{0, 1};
    pf->AEGP_GetNewEffectForEffect(0, in->effect_ref, &effect);
    streams->AEGP_GetNewEffectStreamByIndex(0, effect, 1, &stream);
    streams->AEGP_GetNewStreamValue(0, stream, 1, &start, 0, &value);
    in->pica_basicP->ReleaseSuite("AEGP PF Interface Suite", 1);
    return in->pica_basicP->ReleaseSuite("AEGP Stream Suite", 4);
}
