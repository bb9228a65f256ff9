// Control updates: what the panel shows of a control, never its value.
#include "host/suites/serve.h"
#include "host/suites/tables.h"

namespace zam::host {
namespace {

PF_Err update_param_ui(PF_ProgPtr effect_ref, PF_ParamIndex index, const PF_ParamDef* definition) {
    return serve("ParamUtils.PF_UpdateParamUI", [&](Instance& in) {
        in.check(effect_ref);
        const bool allowed = in.command == PF_Cmd_USER_CHANGED_PARAM ||
                             in.command == PF_Cmd_UPDATE_PARAMS_UI || in.command == PF_Cmd_EVENT;
        if (!allowed) throw Misuse{"control update outside of its commands", PF_Err_INVALID_CALLBACK};
        if (!definition) throw Misuse{"null definition", PF_Err_BAD_CALLBACK_PARAM};
        if (index < 1 || index > in.params.count()) {
            throw Misuse{"control index " + std::to_string(index), PF_Err_INVALID_INDEX};
        }
        in.params.take_ui(index, *definition);
    });
}

PF_Err get_keyframe_count(PF_ProgPtr effect_ref, PF_ParamIndex index, PF_KeyIndex* count) {
    return serve("ParamUtils.PF_GetKeyframeCount", [&](Instance& in) {
        in.check(effect_ref);
        if (index < 1 || index > in.params.count()) throw Refusal{PF_Err_INVALID_INDEX};
        const Control& control = in.params.controls()[static_cast<std::size_t>(index - 1)];
        const auto keys = holds_value(control.type) ? in.params.value(index).keys.size() : 0;
        result(count) = keys > 0 ? static_cast<PF_KeyIndex>(keys) : AEGP_NumKF_NO_DATA;
    });
}

}  // namespace

const PF_ParamUtilsSuite1 kParamUtilsSuite1 = {
    .PF_UpdateParamUI = update_param_ui,
    .PF_GetCurrentStateObsolete = unserved<"ParamUtils.PF_GetCurrentStateObsolete">,
    .PF_HasParamChangedObsolete = unserved<"ParamUtils.PF_HasParamChangedObsolete">,
    .PF_HaveInputsChangedOverTimeSpanObsolete =
        unserved<"ParamUtils.PF_HaveInputsChangedOverTimeSpanObsolete">,
    .PF_IsIdenticalCheckout = unserved<"ParamUtils.PF_IsIdenticalCheckout">,
    .PF_FindKeyframeTime = unserved<"ParamUtils.PF_FindKeyframeTime">,
    .PF_GetKeyframeCount = get_keyframe_count,
    .PF_CheckoutKeyframe = unserved<"ParamUtils.PF_CheckoutKeyframe">,
    .PF_CheckinKeyframe = unserved<"ParamUtils.PF_CheckinKeyframe">,
    .PF_KeyIndexToTime = unserved<"ParamUtils.PF_KeyIndexToTime">,
};

const PF_ParamUtilsSuite3 kParamUtilsSuite3 = {
    .PF_UpdateParamUI = update_param_ui,
    .PF_GetCurrentState = unserved<"ParamUtils.PF_GetCurrentState">,
    .PF_AreStatesIdentical = unserved<"ParamUtils.PF_AreStatesIdentical">,
    .PF_IsIdenticalCheckout = unserved<"ParamUtils.PF_IsIdenticalCheckout">,
    .PF_FindKeyframeTime = unserved<"ParamUtils.PF_FindKeyframeTime">,
    .PF_GetKeyframeCount = get_keyframe_count,
    .PF_CheckoutKeyframe = unserved<"ParamUtils.PF_CheckoutKeyframe">,
    .PF_CheckinKeyframe = unserved<"ParamUtils.PF_CheckinKeyframe">,
    .PF_KeyIndexToTime = unserved<"ParamUtils.PF_KeyIndexToTime">,
};

}  // namespace zam::host
