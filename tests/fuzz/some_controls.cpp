#include "tests/fuzz/some_controls.h"

#include <cmath>

#include "cli/messages.h"
#include "tests/fuzz/target.h"

namespace zam::fuzz {
namespace {

host::Control control(int index, PF_ParamType type, const char* name, const char* group) {
    host::Control result;
    result.index = index;
    result.id = index + 20;
    result.type = type;
    result.name = name;
    result.group = group;
    result.valid_max = 1000.0;
    return result;
}

std::vector<host::Control> make_controls() {
    std::vector<host::Control> controls = {control(1, PF_Param_POPUP, "Look", ""),
                                           control(2, PF_Param_FLOAT_SLIDER, "Reach", "Spot Lights"),
                                           control(3, PF_Param_FLOAT_SLIDER, "Intensity", "Spot Lights"),
                                           control(4, PF_Param_FLOAT_SLIDER, "Intensity", "Point Lights"),
                                           control(5, PF_Param_CHECKBOX, "Light's Intensity", "Point Lights"),
                                           control(6, PF_Param_LAYER, "Set Reach Layer", "Spot Lights")};
    controls[0].choices = {"Natural", "Strong"};
    controls[0].flags = PF_ParamFlag_CANNOT_TIME_VARY;
    return controls;
}

}  // namespace

const std::vector<host::Control>& some_controls() {
    static const std::vector<host::Control> controls = make_controls();
    return controls;
}

void require_resolves(const host::ControlSetting& setting, const host::Composition& composition) {
    try {
        const host::ResolvedSetting resolved = host::resolve_setting(some_controls(), setting, composition);
        require(resolved.index >= 1 && resolved.index <= 6, "index of a control");
        require(std::isfinite(resolved.value.at(0.0)), "value of a control");
        for (const auto& key : resolved.value.keys) require(std::isfinite(key.value), "key of a control");
    } catch (const host::ControlError& error) {
        // Its hint stands behind a semicolon.
        for (const std::string& line : cli::message_lines(error.what())) require_clear_line(line);
    }
}

}  // namespace zam::fuzz
