#pragma once
// zam controls: the control table as the plug-in registered it.
#include "cli/command.h"

namespace zam::cli {

// The command prints to stdout. Throws host::PluginError.
Command add_controls(CLI::App& app);

}  // namespace zam::cli
