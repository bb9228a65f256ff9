#pragma once
// Messages for the user: text in return_msg, shown by the host after the command.
#include "hostapi/effect.h"

namespace zam {

// Replaces any earlier message of this command. At most PF_MAX_EFFECT_MSG_LEN characters.
inline void ShowError(PF_InData* in_data, PF_OutData* out_data, const char* text) {
    out_data->out_flags |= PF_OutFlag_DISPLAY_ERROR_MESSAGE;
    in_data->utils->ansi.sprintf(out_data->return_msg, "%s", text);
}

}  // namespace zam
