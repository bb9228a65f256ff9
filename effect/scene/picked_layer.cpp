#include "effect/scene/picked_layer.h"

#include <utility>

#include "effect/scene/layers.h"

namespace zam {

A_Err PickedLayerStream::Open(PF_InData* in_data, int param_index, AEGP_LayerIDVal* picked) {
    // The suites that give things back are fetched before there is anything to give back.
    suites_.Effect1();
    const AEGP_StreamSuite1* streams = suites_.Stream4();

    A_Err err = suites_.PFInterface1()->AEGP_GetNewEffectForEffect(kPluginId, in_data->effect_ref, &effect_);
    if (err) effect_ = nullptr;
    if (!effect_) return err ? err : kNothingThere;
    err = streams->AEGP_GetNewEffectStreamByIndex(kPluginId, effect_, param_index, &stream_);
    if (err) stream_ = nullptr;
    if (!stream_) return err ? err : kNothingThere;
    const A_Time time{in_data->current_time, in_data->time_scale};
    err = streams->AEGP_GetNewStreamValue(kPluginId, stream_, AEGP_LTimeMode_CompTime, &time, false, &value_);
    if (err) return err;
    has_value_ = true;
    *picked = value_.val.layer_id;
    return A_Err_NONE;
}

A_Err PickedLayerStream::CloseValue() {
    if (!std::exchange(has_value_, false)) return A_Err_NONE;
    return suites_.Stream4()->AEGP_DisposeStreamValue(&value_);
}

A_Err PickedLayerStream::Close() {
    A_Err first = CloseValue();
    if (AEGP_StreamRefH stream = std::exchange(stream_, nullptr)) {
        const A_Err err = suites_.Stream4()->AEGP_DisposeStream(stream);
        if (!first) first = err;
    }
    if (AEGP_EffectRefH effect = std::exchange(effect_, nullptr)) {
        const A_Err err = suites_.Effect1()->AEGP_DisposeEffect(effect);
        if (!first) first = err;
    }
    return first;
}

}  // namespace zam
