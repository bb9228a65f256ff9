#pragma once
// What the effect says of itself. PF_Cmd_GLOBAL_SETUP reports these words, and the property resource that the host
// reads before it loads the code is written from them (effect/resource).
#include "hostapi/constants.h"

namespace zam {

inline constexpr char kEffectName[] = "Zam";
// Saved projects and scripts find the effect by this name, so it is never changed. The name in the menu has been
// chosen for it: nobody has to learn a second one, and no part of it names a version or a maker that may change.
inline constexpr char kMatchName[] = "Zam";
// A category of its own: the host translates the names of its own categories, and an effect that carries one of
// them in English gets a second menu beside it elsewhere.
inline constexpr char kCategory[] = "Zam";
inline constexpr char kEntryPoint[] = "EntryPointFunc";
inline constexpr int kMajorVersion = 1, kMinorVersion = 1, kBugfixVersion = 1;
// The about text's second line; %s is the row target in use.
inline constexpr char kCreditLine[] = "Haze in closed form, rows on %s. Visualize 3D Lights";

inline constexpr A_u_long kVersionWord =
    (kMajorVersion << PF_Vers_VERS_SHIFT) | (kMinorVersion << PF_Vers_SUBVERS_SHIFT) |
    (kBugfixVersion << PF_Vers_BUGFIX_SHIFT) | (PF_Stage_RELEASE << PF_Vers_STAGE_SHIFT);
inline constexpr PF_OutFlags kOutFlags =
    PF_OutFlag_KEEP_RESOURCE_OPEN | PF_OutFlag_DEEP_COLOR_AWARE | PF_OutFlag_SEND_UPDATE_PARAMS_UI;
// The host renders again when the camera or a light changes. deliberate: groups' collapsed bits are not
// announced
inline constexpr PF_OutFlags2 kOutFlags2 = PF_OutFlag2_I_USE_3D_CAMERA | PF_OutFlag2_I_USE_3D_LIGHTS;

}  // namespace zam
