#pragma once
// The layer that the user picked in one of the effect's layer controls.
#include "effect/scene/suites.h"

namespace zam {

// The effect's own stream of a layer control. What it took from the host it gives back when it goes away, if
// it was not asked to before. Results are the host's; those that give back are the first error of theirs.
class PickedLayerStream {
  public:
    explicit PickedLayerStream(const AEGP_SuiteHandler& suites) : suites_(suites) {}
    ~PickedLayerStream() { Close(); }
    PickedLayerStream(const PickedLayerStream&) = delete;
    PickedLayerStream& operator=(const PickedLayerStream&) = delete;

    // Takes the stream of the control at `param_index` and its value: the picked layer's id, 0 for none.
    // deliberate: asked at the effect's time as it stands, not converted to composition time
    A_Err Open(PF_InData* in_data, int param_index, AEGP_LayerIDVal* picked);
    A_Err CloseValue();
    A_Err Close();

  private:
    const AEGP_SuiteHandler& suites_;
    AEGP_EffectRefH effect_ = nullptr;
    AEGP_StreamRefH stream_ = nullptr;
    AEGP_StreamValue value_{};
    bool has_value_ = false;
};

}  // namespace zam
