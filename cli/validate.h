#pragma once
// zam validate: can these scenes be rendered?
#include "cli/command.h"

namespace zam::cli {

// The command prints to stdout, and messages to stderr as it goes. Throws UsageError, host::PluginError, and Told when
// a scene is no good.
Command add_validate(CLI::App& app);

}  // namespace zam::cli
