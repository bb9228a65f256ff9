#pragma once
// The Effect Controls panel: greying controls that the chosen models make meaningless, and keeping the reach
// light.
#include "hostapi/effect.h"

namespace zam {

// `userChanged` is true for PF_Cmd_USER_CHANGED_PARAM, whose `extra` names the control; false for
// PF_Cmd_UPDATE_PARAMS_UI. Errors go to the user through out_data's message, if anywhere; a suite that the
// reach light needs and the host lacks is thrown as an int.
void UpdateECW(PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[], bool userChanged,
               PF_UserChangedParamExtra* extra);

}  // namespace zam
