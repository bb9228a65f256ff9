#pragma once
// zam check: why a plug-in file would not load, or would be rejected.
#include "cli/command.h"

namespace zam::cli {

// The command prints the result of every check to stdout. Throws host::PluginError when one has failed.
Command add_check(CLI::App& app);

// The process that loads the plug-in: `zam check-child LIBRARY ENTRY JOURNAL`. Not for users.
[[nodiscard]] bool is_check_child(int argc, char** argv);
int check_child(char** argv);

}  // namespace zam::cli
