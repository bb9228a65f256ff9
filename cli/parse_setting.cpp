#include "cli/parse_setting.h"

#include <charconv>
#include <optional>

#include "cli/exit_code.h"

namespace zam::cli {
namespace {

std::optional<double> number_of(const std::string& text) {
    double number = 0.0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return number;
}

host::ControlValue value_of(const std::string& text, PF_ParamType type) {
    if (type == PF_Param_CHECKBOX) {
        if (text == "true" || text == "on" || text == "1") return true;
        if (text == "false" || text == "off" || text == "0") return false;
        return text;
    }
    if (const auto number = number_of(text)) return *number;
    return text;
}

}  // namespace

host::ControlSetting parse_setting(const std::string& text, const std::vector<host::Control>& controls) {
    const std::string where = "--set '" + text + "'";
    const std::size_t equals = text.find('=');
    if (equals == std::string::npos || equals == 0)
        throw UsageError(where + ": there is no control and value\n" +
                         "hint: write --set 'Look=Strong'; zam controls lists them");
    host::ControlSetting setting;
    setting.control = text.substr(0, equals);
    setting.where = where;
    try {
        const host::Control& control = host::find_control(controls, setting.control);
        setting.value = value_of(text.substr(equals + 1), control.type);
    } catch (const host::ControlError& error) {
        throw UsageError(where + ": " + error.what());
    }
    return setting;
}

}  // namespace zam::cli
