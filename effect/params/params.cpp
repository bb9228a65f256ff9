#include "effect/params/params.h"

#include <algorithm>
#include <cstring>

namespace zam {
namespace {

PF_ParamDef MakeDefinition(PF_InData* in_data, const ControlRow& row) {
    PF_ParamDef def{};
    def.uu.id = row.id;
    def.param_type = row.type;
    def.flags = row.flags;
    in_data->utils->ansi.strcpy(def.name, row.name);
    switch (row.type) {
        case PF_Param_FIX_SLIDER:
            def.u.fd.value = row.slider_default;
            def.u.fd.dephault = row.slider_default;
            def.u.fd.valid_min = row.valid_min;
            def.u.fd.valid_max = row.valid_max;
            def.u.fd.slider_min = row.slider_min;
            def.u.fd.slider_max = row.slider_max;
            def.u.fd.precision = PF_Precision_TENTHS;
            break;
        case PF_Param_POPUP:
            def.u.pd.value = row.choice_default;
            def.u.pd.dephault = static_cast<A_short>(row.choice_default);
            def.u.pd.num_choices =
                static_cast<A_short>(1 + std::count(row.text, row.text + std::strlen(row.text), '|'));
            def.u.pd.u.namesptr = row.text;
            break;
        case PF_Param_CHECKBOX:
            def.u.bd.value = row.choice_default;
            def.u.bd.dephault = static_cast<PF_Boolean>(row.choice_default);
            def.u.bd.u.nameptr = row.text;
            break;
        case PF_Param_LAYER:
            def.u.ld.dephault = PF_LayerDefault_NONE;
            break;
        default:
            break;
    }
    return def;
}

}  // namespace

PF_Err AddControls(PF_InData* in_data) {
    for (const ControlRow& row : kControlTable) {
        constexpr PF_ParamIndex kAppend = -1;
        PF_ParamDef def = MakeDefinition(in_data, row);
        if (const PF_Err err = in_data->inter.add_param(in_data->effect_ref, kAppend, &def)) return err;
    }
    return PF_Err_NONE;
}

}  // namespace zam
