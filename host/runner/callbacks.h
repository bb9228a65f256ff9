#pragma once
// The callbacks that travel in PF_InData. Pointers that serve nothing answer PF_Err_INVALID_CALLBACK.
#include "hostapi/effect.h"

namespace zam::host {

[[nodiscard]] PF_InteractCallbacks interact_callbacks();
// `handles`: with the four calls for memory handles; their places are null without.
[[nodiscard]] PF_UtilCallbacks util_callbacks(bool handles);
[[nodiscard]] PF_ANSICallbacks ansi_callbacks();

}  // namespace zam::host
