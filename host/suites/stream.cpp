// Streams: values over time, of layers and of the effect's controls.
#include "host/suites/conversions.h"
#include "host/suites/serve.h"
#include "host/suites/stream_access.h"
#include "host/suites/tables.h"

namespace zam::host {
namespace {

std::uint64_t number(AEGP_StreamRefH stream) { return reinterpret_cast<std::uintptr_t>(stream); }

// There are no expressions here, so both values are the same; the call log tells which one was asked for.
std::string_view value_call(A_Boolean pre_expression, std::string_view after, std::string_view before) {
    return pre_expression ? before : after;
}

A_Err is_stream_legal(AEGP_LayerH layer, AEGP_LayerStream stream, A_Boolean* legal) {
    return serve("Stream.AEGP_IsStreamLegal",
                 [&](Instance& in) { result(legal) = find_stream(in.layer(layer), stream).has_value(); });
}

A_Err can_vary_over_time(AEGP_StreamRefH stream, A_Boolean* can) {
    return serve("Stream.AEGP_CanVaryOverTime",
                 [&](Instance& in) { result(can) = open_stream(in, stream).can_vary; });
}

A_Err get_new_layer_stream(AEGP_PluginID, AEGP_LayerH layer, AEGP_LayerStream stream,
                           AEGP_StreamRefH* reference) {
    return serve("Stream.AEGP_GetNewLayerStream", [&](Instance& in) {
        in.must_allow_new_streams();
        Layer& owner = in.layer(layer);
        (void)layer_stream(owner, stream);
        AEGP_StreamRefH& to = result(reference);
        to = in.lend_stream({owner.id, stream}, "AEGP_GetNewLayerStream");
    });
}

A_Err get_effect_num_streams(AEGP_EffectRefH effect, A_long* count) {
    return serve("Stream.AEGP_GetEffectNumParamStreams", [&](Instance& in) {
        in.check(effect);
        result(count) = in.params.count() + 1;
    });
}

A_Err get_new_effect_stream(AEGP_PluginID, AEGP_EffectRefH effect, PF_ParamIndex index,
                            AEGP_StreamRefH* reference) {
    return serve("Stream.AEGP_GetNewEffectStreamByIndex", [&](Instance& in) {
        in.must_allow_new_streams();
        in.check(effect);
        if (index < 0 || index > in.params.count()) throw Refusal{PF_Err_INVALID_INDEX};
        AEGP_StreamRefH& to = result(reference);
        to = in.lend_stream({0, index}, "AEGP_GetNewEffectStreamByIndex");
    });
}

A_Err dispose_stream(AEGP_StreamRefH stream) {
    return serve(
        "Stream.AEGP_DisposeStream",
        [&](Instance& in) {
            (void)in.stream(stream);
            (void)in.ledger.give_back(Loan::stream, number(stream));
        },
        Door::giving_back);
}

A_Err is_stream_timevarying(AEGP_StreamRefH stream, A_Boolean* varies) {
    return serve("Stream.AEGP_IsStreamTimevarying", [&](Instance& in) {
        const OpenStream open = open_stream(in, stream);
        result(varies) = open.data && keyframes(*open.data) > 0;
    });
}

A_Err get_stream_type(AEGP_StreamRefH stream, AEGP_StreamType* type) {
    return serve("Stream.AEGP_GetStreamType",
                 [&](Instance& in) { result(type) = open_stream(in, stream).type; });
}

A_Err get_new_stream_value(AEGP_PluginID, AEGP_StreamRefH stream, AEGP_LTimeMode mode, const A_Time* time,
                           A_Boolean pre_expression, AEGP_StreamValue* value) {
    const auto call = value_call(pre_expression, "Stream.AEGP_GetNewStreamValue",
                                 "Stream.AEGP_GetNewStreamValue (before expressions)");
    return serve(call, [&](Instance& in) {
        const OpenStream open = open_stream(in, stream);
        const AEGP_StreamVal found = value_at(open, in.frame(*open.layer, mode, time));
        result(value) = {stream, found};
        in.ledger.lend(Loan::stream_value, number(stream), "AEGP_GetNewStreamValue");
    });
}

A_Err dispose_stream_value(AEGP_StreamValue* value) {
    return serve(
        "Stream.AEGP_DisposeStreamValue",
        [&](Instance& in) {
            AEGP_StreamValue& given = required(value);
            if (!in.ledger.give_back(Loan::stream_value, number(given.streamH))) {
                throw Misuse{"stream value that is not held", PF_Err_BAD_CALLBACK_PARAM};
            }
            given = AEGP_StreamValue{};  // a second disposal is then seen as one
        },
        Door::giving_back);
}

A_Err set_stream_value(AEGP_PluginID, AEGP_StreamRefH stream, AEGP_StreamValue* value) {
    return serve("Stream.AEGP_SetStreamValue", [&](Instance& in) {
        in.must_be_changeable();
        const OpenStream open = open_stream(in, stream);
        AEGP_StreamVal to = required(value).val;
        if (open.type == AEGP_StreamType_LAYER_ID) to.one_d = value->val.layer_id;
        if (!open.data || !set_value(*open.data, to)) throw Refusal{A_Err_PARAMETER};
    });
}

A_Err get_layer_stream_value(AEGP_LayerH layer, AEGP_LayerStream stream, AEGP_LTimeMode mode,
                             const A_Time* time, A_Boolean pre_expression, AEGP_StreamVal* value,
                             AEGP_StreamType* type) {
    const auto call = value_call(pre_expression, "Stream.AEGP_GetLayerStreamValue",
                                 "Stream.AEGP_GetLayerStreamValue (before expressions)");
    return serve(call, [&](Instance& in) {
        Layer& owner = in.layer(layer);
        const LayerStreamData found = layer_stream(owner, stream);
        result(value) = value_at(found.data, in.frame(owner, mode, time));
        if (type) *type = found.type;
    });
}

A_Err get_expression_state(AEGP_PluginID, AEGP_StreamRefH stream, A_Boolean* on) {
    return serve("Stream.AEGP_GetExpressionState", [&](Instance& in) {
        (void)in.stream(stream);
        result(on) = 0;  // there are no expressions here
    });
}

}  // namespace

const AEGP_StreamSuite1 kStreamSuite4 = {
    .AEGP_IsStreamLegal = is_stream_legal,
    .AEGP_CanVaryOverTime = can_vary_over_time,
    .AEGP_GetNewLayerStream = get_new_layer_stream,
    .AEGP_GetEffectNumParamStreams = get_effect_num_streams,
    .AEGP_GetNewEffectStreamByIndex = get_new_effect_stream,
    .AEGP_GetNewMaskStream = unserved<"Stream.AEGP_GetNewMaskStream">,
    .AEGP_DisposeStream = dispose_stream,
    .AEGP_GetStreamName = unserved<"Stream.AEGP_GetStreamName">,
    .AEGP_GetStreamUnitsText = unserved<"Stream.AEGP_GetStreamUnitsText">,
    .AEGP_GetStreamProperties = unserved<"Stream.AEGP_GetStreamProperties">,
    .AEGP_IsStreamTimevarying = is_stream_timevarying,
    .AEGP_GetStreamType = get_stream_type,
    .AEGP_GetNewStreamValue = get_new_stream_value,
    .AEGP_DisposeStreamValue = dispose_stream_value,
    .AEGP_SetStreamValue = set_stream_value,
    .AEGP_GetLayerStreamValue = get_layer_stream_value,
    .AEGP_GetExpressionState = get_expression_state,
    .AEGP_SetExpressionState = unserved<"Stream.AEGP_SetExpressionState">,
    .AEGP_GetExpression = unserved<"Stream.AEGP_GetExpression">,
    .AEGP_SetExpression = unserved<"Stream.AEGP_SetExpression">,
};

}  // namespace zam::host
