#pragma once
// The effect's one entry point for the host.
#include "effect/scene/export.h"
#include "hostapi/effect.h"

namespace zam {

// Called with one command at a time per instance. Exceptions are not caught here: a missing scene suite
// reaches the host as the int PF_Err_BAD_CALLBACK_PARAM.
ZAM_EXPORT PF_Err EntryPointFunc(PF_Cmd cmd, PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[],
                                 PF_LayerDef* output, void* extra);

}  // namespace zam
