#pragma once
// The effect's controls, described once, as data. Registration goes by this table, reading and greying by its
// indices.
#include <array>

#include "hostapi/effect.h"

namespace zam {

// A control's place in the host's params[] array. Index 0 is the host's own input layer.
enum ControlIndex : A_long {
    kPointLightsGroup = 1,
    kPointLightModel,
    kPointUseLightsIntensity,
    kPointIntensity,
    kSoftness,
    kRadius,
    kIndividualRadius,
    kSourceIntensity,
    kSourceRadius,
    kPointLightsEnd,
    kSpotLightsGroup,
    kSpotLightModel,
    kSpotUseLightsIntensity,
    kSpotIntensity,
    kStartDistance,
    kReach,
    kIndividualReach,
    kReachCompLayer,
    kSetReachLayer,
    kReachBothSides,
    kSpotLightsEnd,
    kGeneralGroup,
    kUseLightsThatAre,
    kNameStartsWith,
    kLook,
    kGamma,
    kGeneralEnd,
    kNumParams  // with the input layer
};

struct ControlRow {
    ControlIndex index;
    PF_ParamType type;
    A_long id;         // persistent: saved projects match controls by it
    const char* name;  // empty for group ends
    PF_ParamFlags flags = PF_ParamFlag_NONE;
    // Sliders.
    PF_Fixed valid_min = 0, valid_max = 0, slider_min = 0, slider_max = 0, slider_default = 0;
    // Popups: items joined by "|" and the 1-based default. Boxes: the text beside the box and its default.
    const char* text = nullptr;
    int choice_default = 0;
};

// Rows in the order of their indices, 1 to kNumParams - 1.
extern const std::array<ControlRow, kNumParams - 1> kControlTable;

}  // namespace zam
