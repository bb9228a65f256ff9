#include "effect/params/control_table.h"

namespace zam {
namespace {

constexpr PF_Fixed Fixed(int whole) { return whole * 65536; }

constexpr ControlRow Group(ControlIndex index, A_long id, const char* name) {
    return {.index = index,
            .type = PF_Param_GROUP_START,
            .id = id,
            .name = name,
            .flags = PF_ParamFlag_START_COLLAPSED};
}

constexpr ControlRow GroupEnd(ControlIndex index, A_long id) {
    return {.index = index, .type = PF_Param_GROUP_END, .id = id, .name = ""};
}

constexpr ControlRow Popup(ControlIndex index, A_long id, const char* name, const char* choices,
                           int initial) {
    return {.index = index,
            .type = PF_Param_POPUP,
            .id = id,
            .name = name,
            .text = choices,
            .choice_default = initial};
}

constexpr ControlRow Box(ControlIndex index, A_long id, const char* name, const char* label, bool on,
                         PF_ParamFlags flags = PF_ParamFlag_NONE) {
    return {.index = index,
            .type = PF_Param_CHECKBOX,
            .id = id,
            .name = name,
            .flags = flags,
            .text = label,
            .choice_default = on};
}

// From `least` to `valid_max`, the slider itself to `slider_max`.
constexpr ControlRow RawSlider(ControlIndex index, A_long id, const char* name, PF_Fixed least, int valid_max,
                               int slider_max, int initial) {
    return {.index = index,
            .type = PF_Param_FIX_SLIDER,
            .id = id,
            .name = name,
            .flags = PF_ParamFlag_COLLAPSE_TWIRLY,
            .valid_min = least,
            .valid_max = Fixed(valid_max),
            .slider_min = least,
            .slider_max = Fixed(slider_max),
            .slider_default = Fixed(initial)};
}
constexpr ControlRow Slider(ControlIndex index, A_long id, const char* name, int valid_max, int slider_max,
                            int initial) {
    return RawSlider(index, id, name, 0, valid_max, slider_max, initial);
}

constexpr ControlRow LayerPicker(ControlIndex index, A_long id, const char* name) {
    return {.index = index, .type = PF_Param_LAYER, .id = id, .name = name, .flags = PF_ParamFlag_SUPERVISE};
}

constexpr char kPointModels[] = "Off|Natural|Radius|Radius+Source|Source";
constexpr char kSpotModels[] = "Off|Natural|Distance|Constant";
constexpr char kIndividual[] = "None|Intensity (mult)|Shadow Darkness (mult)|Shadow Diffusion (add)";
constexpr char kSwitches[] = "On|Off|On or Off";
constexpr char kNames[] = "Anything|Zam|Front|Back";
constexpr char kLooks[] = "Weak|Linear|Natural|Strong|Adjustable Linear|Adjustable Natural";

// deliberate: about 0.001, kept as this raw value
constexpr PF_Fixed kLeastGamma = 0x00000042;

// deliberate: ids out of order, without 10 and 24; projects were saved with them
constexpr std::array<ControlRow, kNumParams - 1> kRows = {{
    Group(kPointLightsGroup, 1, "Point Lights"),
    Popup(kPointLightModel, 2, "Point Light Model", kPointModels, 2),
    Box(kPointUseLightsIntensity, 3, "Light's Intensity", "Use", true),
    Slider(kPointIntensity, 4, "Intensity", 1000, 500, 100),
    Slider(kSoftness, 5, "Softness [%]", 100, 100, 0),
    Slider(kRadius, 6, "Radius", 10000, 1000, 100),
    Popup(kIndividualRadius, 7, "Individual Radius", kIndividual, 1),
    Slider(kSourceIntensity, 8, "Source Intensity", 1000, 500, 50),
    Slider(kSourceRadius, 9, "Source Radius", 1000, 100, 6),
    GroupEnd(kPointLightsEnd, 11),
    Group(kSpotLightsGroup, 12, "Spot Lights"),
    Popup(kSpotLightModel, 13, "Spot Light Model", kSpotModels, 2),
    Box(kSpotUseLightsIntensity, 14, "Light's Intensity", "Use", true),
    Slider(kSpotIntensity, 15, "Intensity", 1000, 500, 100),
    Slider(kStartDistance, 16, "Start Distance", 10000, 1000, 10),
    Slider(kReach, 17, "Reach", 10000, 1000, 400),
    Popup(kIndividualReach, 18, "Individual Reach", kIndividual, 1),
    Box(kReachCompLayer, 19, "Reach Comp Layer", "Active", false, PF_ParamFlag_CANNOT_TIME_VARY),
    LayerPicker(kSetReachLayer, 20, "Set Reach Layer"),
    Box(kReachBothSides, 28, "Reach Both Sides", "Active", true),
    GroupEnd(kSpotLightsEnd, 21),
    Group(kGeneralGroup, 22, "General"),
    Popup(kUseLightsThatAre, 23, "Use Lights that are", kSwitches, 1),
    Popup(kNameStartsWith, 29, "Name starts with", kNames, 1),
    Popup(kLook, 25, "Look", kLooks, 3),
    RawSlider(kGamma, 27, "Gamma", kLeastGamma, 100, 10, 1),
    GroupEnd(kGeneralEnd, 26),
}};

constexpr bool InOrderOfIndices() {
    for (std::size_t i = 0; i < kRows.size(); ++i) {
        if (kRows[i].index != static_cast<ControlIndex>(i + 1)) return false;
    }
    return true;
}
static_assert(InOrderOfIndices());

}  // namespace

const std::array<ControlRow, kNumParams - 1> kControlTable = kRows;

}  // namespace zam
