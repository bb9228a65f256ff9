#include "host/suites/stream_access.h"

#include <cmath>

namespace zam::host {
namespace {

OpenStream control_stream(Instance& in, int index) {
    OpenStream open;
    open.layer = &in.effect_layer();
    if (index == 0) {  // the layer that the effect is applied to
        open.type = AEGP_StreamType_LAYER_ID;
        open.fixed_layer = open.layer->id;
        open.can_vary = false;
        return open;
    }
    const Control& control = in.params.controls()[static_cast<std::size_t>(index - 1)];
    open.can_vary = (control.flags & PF_ParamFlag_CANNOT_TIME_VARY) == 0;
    if (!holds_value(control.type)) return open;
    open.type = control.type == PF_Param_LAYER ? AEGP_StreamType_LAYER_ID : AEGP_StreamType_OneD;
    open.data = &in.params.value(index);
    return open;
}

}  // namespace

LayerStreamData layer_stream(Layer& layer, AEGP_LayerStream stream) {
    const auto found = find_stream(layer, stream);
    if (!found) throw Refusal{A_Err_PARAMETER};
    return *found;
}

OpenStream open_stream(Instance& in, AEGP_StreamRefH reference) {
    const StreamTarget target = in.stream(reference);
    if (target.layer == 0) return control_stream(in, target.number);
    OpenStream open;
    open.layer = in.layers.find(in.composition, target.layer);
    if (!open.layer) throw HandleKeys::misuse("expired ", HandleKind::stream);  // with its layer
    const LayerStreamData found = layer_stream(*open.layer, target.number);
    open.data = found.data;
    open.type = found.type;
    open.can_vary = keyframes(found.data) != AEGP_NumKF_NO_DATA;
    return open;
}

AEGP_StreamVal value_at(const OpenStream& stream, double frame) {
    AEGP_StreamVal value{};
    if (stream.type == AEGP_StreamType_NO_DATA) throw Refusal{A_Err_PARAMETER};
    if (stream.data) value = value_at(*stream.data, frame);
    if (stream.type == AEGP_StreamType_LAYER_ID) {
        const auto id = stream.data ? static_cast<LayerId>(std::lround(value.one_d)) : stream.fixed_layer;
        value = AEGP_StreamVal{};
        value.layer_id = id;
    }
    return value;
}

}  // namespace zam::host
