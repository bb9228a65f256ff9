#pragma once
// What a stream reference stands for, be it a layer's stream or one of the effect's controls.
#include "host/suites/layer_streams.h"
#include "host/suites/serve.h"

namespace zam::host {

struct OpenStream {
    std::optional<StreamData> data;  // nothing for groups and the like
    AEGP_StreamType type = AEGP_StreamType_NO_DATA;
    Layer* layer = nullptr;   // whose layer time the stream goes by
    LayerId fixed_layer = 0;  // the value of the input layer's stream
    bool can_vary = true;
};

// Throw Misuse for bad references, and Refusal for streams that the layer does not have.
[[nodiscard]] OpenStream open_stream(Instance& in, AEGP_StreamRefH reference);
[[nodiscard]] LayerStreamData layer_stream(Layer& layer, AEGP_LayerStream stream);
[[nodiscard]] AEGP_StreamVal value_at(const OpenStream& stream, double frame);

}  // namespace zam::host
