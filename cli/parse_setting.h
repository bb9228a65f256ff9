#pragma once
// One control on the command line, --set 'Look=Strong'.
#include <string>
#include <vector>

#include "host/runner/control.h"

namespace zam::cli {

// "Control=value", the control as in a scene file; what the value's text means depends on the control: boxes
// take true, false, on or off. Throws UsageError. Whether the control takes the value is left to the host.
[[nodiscard]] host::ControlSetting parse_setting(const std::string& text,
                                                 const std::vector<host::Control>& controls);

}  // namespace zam::cli
