#pragma once
// zam info: what is in a scene, and which lights take part in a frame.
#include "cli/command.h"

namespace zam::cli {

// The command prints to stdout. Throws UsageError, io::SceneError, host::ControlError and host::PluginError.
Command add_info(CLI::App& app);

}  // namespace zam::cli
