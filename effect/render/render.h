#pragma once
// The frame renderer.
#include "hostapi/effect.h"

namespace zam {

// PF_Cmd_RENDER: clears `output` and draws the light of the composition's point and spot lights into it,
// straight colour with alpha, 8 or 16 bits. The result is the host's iterate callback's. A camera that cannot
// be read is reported through out_data's message and does not end the render. A scene suite that the host
// lacks is thrown as an int.
PF_Err Render(PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[], PF_LayerDef* output);

}  // namespace zam
