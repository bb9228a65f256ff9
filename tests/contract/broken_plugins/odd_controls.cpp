// Controls with all that a host has to survive: no terminators, null strings, no sense.
#include "tests/contract/broken_plugins/well_behaved.h"

static PF_Err add_odd_controls(PF_InData* in, PF_OutData* out) {
    PF_ParamDef endless{};
    std::memset(endless.name, 97, sizeof endless.name);
    endless.param_type = PF_Param_CHECKBOX;
    endless.uu.id = 1;
    in->inter.add_param(in->effect_ref, -1, &endless);
    PF_ParamDef popup{};
    std::strcpy(popup.name, "Popup");
    popup.param_type = PF_Param_POPUP;
    popup.uu.id = 1;
    popup.u.pd.num_choices = 4;
    in->inter.add_param(in->effect_ref, -1, &popup);
    PF_ParamDef unknown{};
    unknown.param_type = 99;
    if (in->inter.add_param(in->effect_ref, -1, &unknown) != PF_Err_UNRECOGNIZED_PARAM_TYPE) return 1;
    if (in->inter.add_param(in->effect_ref, -1, nullptr) == PF_Err_NONE) return 1;
    if (in->inter.add_param(in->effect_ref, 17, &popup) != PF_Err_INVALID_INDEX) return 1;
    if (in->inter.add_param(nullptr, -1, &popup) == PF_Err_NONE) return 1;
    out->num_params = 3;
    return PF_Err_NONE;
}

BROKEN_AT(PF_Cmd_PARAMS_SETUP) { return add_odd_controls(in, out); }
