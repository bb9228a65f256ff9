// Keyframes of a stream: how many, and when.
#include "host/composition/queries.h"
#include "host/suites/serve.h"
#include "host/suites/stream_access.h"
#include "host/suites/tables.h"

namespace zam::host {
namespace {

A_Err get_stream_num_kfs(AEGP_StreamRefH stream, A_long* count) {
    return serve("Keyframe.AEGP_GetStreamNumKFs", [&](Instance& in) {
        const OpenStream open = open_stream(in, stream);
        result(count) = open.data && open.can_vary ? keyframes(*open.data) : AEGP_NumKF_NO_DATA;
    });
}

A_Err get_keyframe_time(AEGP_StreamRefH stream, AEGP_KeyframeIndex index, AEGP_LTimeMode mode, A_Time* time) {
    return serve("Keyframe.AEGP_GetKeyframeTime", [&](Instance& in) {
        const OpenStream open = open_stream(in, stream);
        const auto frame = open.data ? keyframe_frame(*open.data, index) : std::nullopt;
        if (!frame) throw Refusal{A_Err_PARAMETER};
        result(time) = in.time(mode == AEGP_LTimeMode_LayerTime ? layer_frame(*open.layer, *frame) : *frame);
    });
}

A_Err get_dimensionality(AEGP_StreamRefH stream, int16_t* dimensions) {
    return serve("Keyframe.AEGP_GetStreamValueDimensionality", [&](Instance& in) {
        const AEGP_StreamType type = open_stream(in, stream).type;
        const bool three = type == AEGP_StreamType_ThreeD_SPATIAL || type == AEGP_StreamType_ThreeD;
        result(dimensions) = type == AEGP_StreamType_COLOR     ? 4
                             : three                           ? 3
                             : type == AEGP_StreamType_NO_DATA ? 0
                                                               : 1;
    });
}

}  // namespace

const AEGP_KeyframeSuite1 kKeyframeSuite1 = {
    .AEGP_GetStreamNumKFs = get_stream_num_kfs,
    .AEGP_GetKeyframeTime = get_keyframe_time,
    .AEGP_InsertKeyframe = unserved<"Keyframe.AEGP_InsertKeyframe">,
    .AEGP_DeleteKeyframe = unserved<"Keyframe.AEGP_DeleteKeyframe">,
    .AEGP_GetNewKeyframeValue = unserved<"Keyframe.AEGP_GetNewKeyframeValue">,
    .AEGP_SetKeyframeValue = unserved<"Keyframe.AEGP_SetKeyframeValue">,
    .AEGP_GetStreamValueDimensionality = get_dimensionality,
    .AEGP_GetStreamTemporalDimensionality = unserved<"Keyframe.AEGP_GetStreamTemporalDimensionality">,
    .AEGP_GetNewKeyframeSpatialTangents = unserved<"Keyframe.AEGP_GetNewKeyframeSpatialTangents">,
    .AEGP_SetKeyframeSpatialTangents = unserved<"Keyframe.AEGP_SetKeyframeSpatialTangents">,
    .AEGP_GetKeyframeTemporalEase = unserved<"Keyframe.AEGP_GetKeyframeTemporalEase">,
    .AEGP_SetKeyframeTemporalEase = unserved<"Keyframe.AEGP_SetKeyframeTemporalEase">,
    .AEGP_GetKeyframeFlags = unserved<"Keyframe.AEGP_GetKeyframeFlags">,
    .AEGP_SetKeyframeFlag = unserved<"Keyframe.AEGP_SetKeyframeFlag">,
    .AEGP_GetKeyframeInterpolation = unserved<"Keyframe.AEGP_GetKeyframeInterpolation">,
    .AEGP_SetKeyframeInterpolation = unserved<"Keyframe.AEGP_SetKeyframeInterpolation">,
};

}  // namespace zam::host
