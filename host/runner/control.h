#pragma once
// Controls as a plug-in registered them, and the setting of them from a scene.
#include <stdexcept>
#include <string>
#include <vector>

#include "host/composition/composition.h"
#include "hostapi/effect.h"

namespace zam::host {

struct Control {
    int index = 0;          // place in params[]; 1 is the first registered one
    int id = 0;             // persistent id
    PF_ParamType type = 0;  // PF_Param_*
    std::string name;       // empty for group ends
    std::string group;      // name of the group it stands in; empty outside
    PF_ParamFlags flags = 0;
    PF_ParamUIFlags ui_flags = 0;
    double default_value =
        0.0;  // user units: sliders as numbers, popups 1-based, boxes 0 or 1, layers -1 or 0
    double valid_min = 0.0, valid_max = 0.0, slider_min = 0.0, slider_max = 0.0;  // sliders
    int precision = 0;                                                            // decimals shown, sliders
    std::vector<std::string> choices;                                             // popups
    std::string label;                                                            // beside a check box
    PF_ParamDef definition{};  // as added; its string pointers are null
};

// Its name, led by its group: "Spot Lights/Reach".
[[nodiscard]] std::string path_of(const Control& control);
// Has it a value at all, as groups have none?
[[nodiscard]] bool holds_value(PF_ParamType type);
// True for controls whose values pass from key to key without steps.
[[nodiscard]] bool interpolates(PF_ParamType type);

// A setting that names no control, or a value that a control cannot take. The text ends in a hint.
struct ControlError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct ResolvedSetting {
    int index = 0;
    Animated<double> value;  // as Session::set_control takes it
};

// `text` is "Name", "Group/Name" or "#id". Throws ControlError, with "did you mean" for near misses and with
// the possible groups when a bare name is used twice.
const Control& find_control(const std::vector<Control>& controls, const std::string& text);

// Popup choices by text or number, boxes by true/false, layers by name or id, sliders within their valid
// range.
ResolvedSetting resolve_setting(const std::vector<Control>& controls, const ControlSetting& setting,
                                const Composition& composition);

}  // namespace zam::host
