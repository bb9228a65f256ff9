#pragma once
// Controls: as the scene sets them, then as the command line does.
#include <string>
#include <vector>

#include "cli/plugin_answers.h"
#include "cli/scene_digest.h"
#include "host/runner/session.h"

namespace zam::cli {

// Applies the scene's settings to a started session, then the command line's, which come last and therefore win, and
// returns those. Picks layers as a user would. Throws UsageError for `given`, host::ControlError for the scene's, and
// host::PluginError.
GivenControls apply_settings(host::Session& session, const host::Composition& composition,
                             const std::vector<std::string>& given, PluginAnswers& answers);

}  // namespace zam::cli
