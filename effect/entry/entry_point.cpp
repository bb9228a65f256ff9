#include "effect/entry/entry_point.h"

#include "effect/entry/update_ecw.h"
#include "effect/entry/version.h"
#include "effect/params/params.h"
#include "effect/render/render.h"
#include "effect/render/rows.h"
#include "effect/scene/host_memory.h"
#include "effect/scene/sequence_data.h"

namespace zam {
namespace {

// Two lines, with the carriage return between them that the host wants.
PF_Err About(PF_InData* in_data, PF_OutData* out_data) {
    A_char credit[PF_MAX_EFFECT_MSG_LEN] = {};
    in_data->utils->ansi.sprintf(credit, kCreditLine, ChosenTarget().name);
    in_data->utils->ansi.sprintf(out_data->return_msg, "%s, v%d.%d.%d\r%s", kEffectName, kMajorVersion,
                                 kMinorVersion, kBugfixVersion, credit);
    return PF_Err_NONE;
}

PF_Err GlobalSetup(PF_InData* in_data, PF_OutData* out_data) {
    ChosenTarget();  // here, so that no row reads the environment
    out_data->my_version = kVersionWord;
    out_data->out_flags = kOutFlags;
    out_data->out_flags2 = kOutFlags2;
    out_data->global_data = NewHostHandle(in_data, sizeof(A_long));
    const LockedHandle global(in_data, out_data->global_data);
    if (auto* marker = static_cast<A_long*>(global.get())) *marker = 1;
    return PF_Err_NONE;
}

PF_Err GlobalSetdown(PF_InData* in_data, PF_OutData* out_data) {
    { const LockedHandle locked_once(in_data, in_data->global_data); }
    DisposeHostHandle(in_data, in_data->global_data);
    out_data->global_data = nullptr;
    return PF_Err_NONE;
}

PF_Err ParamsSetup(PF_InData* in_data, PF_OutData* out_data) {
    if (const PF_Err err = AddControls(in_data)) return err;
    out_data->num_params = kNumParams;
    return PF_Err_NONE;
}

PF_Err SequenceSetup(PF_InData* in_data, PF_OutData* out_data) {
    out_data->sequence_data = NewHostHandle(in_data, kSequenceBytes);
    const LockedHandle sequence(in_data, out_data->sequence_data);
    WriteReachLayerId(sequence.get(), 0);
    return PF_Err_NONE;
}

// A restored block is kept as it is.
PF_Err SequenceResetup(PF_InData* in_data, PF_OutData* out_data) {
    return in_data->sequence_data ? PF_Err{PF_Err_NONE} : SequenceSetup(in_data, out_data);
}

// The host forgets its pointers to the block after this command.
PF_Err SequenceSetdown(PF_InData* in_data) {
    DisposeHostHandle(in_data, in_data->sequence_data);
    return PF_Err_NONE;
}

}  // namespace

ZAM_EXPORT PF_Err EntryPointFunc(PF_Cmd cmd, PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[],
                                 PF_LayerDef* output, void* extra) {
    switch (cmd) {
        case PF_Cmd_ABOUT:
            return About(in_data, out_data);
        case PF_Cmd_GLOBAL_SETUP:
            return GlobalSetup(in_data, out_data);
        case PF_Cmd_GLOBAL_SETDOWN:
            return GlobalSetdown(in_data, out_data);
        case PF_Cmd_PARAMS_SETUP:
            return ParamsSetup(in_data, out_data);
        case PF_Cmd_SEQUENCE_SETUP:
            return SequenceSetup(in_data, out_data);
        case PF_Cmd_SEQUENCE_RESETUP:
            return SequenceResetup(in_data, out_data);
        case PF_Cmd_SEQUENCE_SETDOWN:
            return SequenceSetdown(in_data);
        case PF_Cmd_RENDER:
            return Render(in_data, out_data, params, output);
        case PF_Cmd_USER_CHANGED_PARAM:
            UpdateECW(in_data, out_data, params, true, static_cast<PF_UserChangedParamExtra*>(extra));
            return PF_Err_NONE;
        case PF_Cmd_UPDATE_PARAMS_UI:
            UpdateECW(in_data, out_data, params, false, static_cast<PF_UserChangedParamExtra*>(extra));
            return PF_Err_NONE;
        default:  // nothing to flatten, to set up for a frame or to answer
            return PF_Err_NONE;
    }
}

}  // namespace zam
