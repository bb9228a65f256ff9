#pragma once
// Registration and reading of the controls.
#include "effect/params/control_table.h"

namespace zam {

// Adds every control in order. The first error of the host is the result, and later controls are left out.
PF_Err AddControls(PF_InData* in_data);

// Values of params[index]: a slider's number, a popup's 1-based choice, whether a box is ticked.
inline double SliderValue(PF_ParamDef* const params[], ControlIndex index) {
    constexpr double kPerFixed = 1.52587890625e-5;  // 1 / 65536
    return params[index]->u.fd.value * kPerFixed;
}
inline A_long ChoiceValue(PF_ParamDef* const params[], ControlIndex index) {
    return params[index]->u.pd.value;
}
inline bool BoxValue(PF_ParamDef* const params[], ControlIndex index) {
    return params[index]->u.bd.value != 0;
}

}  // namespace zam
