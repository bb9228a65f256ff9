#pragma once
// Controls: as the scene sets them, and on the command line, --set 'Look=Strong'.
#include <string>
#include <vector>

#include "cli/plugin_answers.h"
#include "cli/scene_digest.h"
#include "host/runner/control.h"
#include "host/runner/session.h"

namespace zam::cli {

// "Control=value", the control as in a scene file; what the value's text means depends on the control: boxes
// take true, false, on or off. Throws UsageError. Whether the control takes the value is left to the host.
[[nodiscard]] host::ControlSetting parse_setting(const std::string& text,
                                                 const std::vector<host::Control>& controls);

// Applies the scene's settings to a started session, then the command line's, which come last and therefore win, and
// returns those. Picks layers as a user would. Throws UsageError for `given`, host::ControlError for the scene's, and
// host::PluginError.
GivenControls apply_settings(host::Session& session, const host::Composition& composition,
                             const std::vector<std::string>& given, PluginAnswers& answers);

}  // namespace zam::cli
