#pragma once
// The suites that the host serves, full length. Slots without a service answer PF_Err_INVALID_CALLBACK.
#include "hostapi/basic_suite.h"
#include "hostapi/comp_suites.h"
#include "hostapi/layer_suites.h"
#include "hostapi/param_utils_suites.h"
#include "hostapi/scene_suites.h"
#include "hostapi/stream_suites.h"

namespace zam::host {

extern const AEGP_PFInterfaceSuite1 kPfInterfaceSuite1;
extern const AEGP_LayerSuite1 kLayerSuite5;
extern const AEGP_LayerSuite3 kLayerSuite8;
extern const AEGP_LightSuite1 kLightSuite1;
extern const AEGP_LightSuite2 kLightSuite2;
extern const AEGP_CameraSuite2 kCameraSuite2;
extern const AEGP_StreamSuite1 kStreamSuite4;
extern const AEGP_CompSuite1 kCompSuite4;
extern const AEGP_CompSuite4 kCompSuite9;
extern const AEGP_ItemSuite1 kItemSuite3;
extern const AEGP_KeyframeSuite1 kKeyframeSuite1;
extern const AEGP_EffectSuite1 kEffectSuite1;
extern const PF_ParamUtilsSuite1 kParamUtilsSuite1;  // wire versions 1 and 2
extern const PF_ParamUtilsSuite3 kParamUtilsSuite3;

// Through which the others are fetched. The table is constant; the interface wants it without const.
[[nodiscard]] SPBasicSuite* basic_suite();

}  // namespace zam::host
