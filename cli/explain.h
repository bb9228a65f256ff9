#pragma once
// zam explain: which light adds how much at a pixel, found by rendering with one light at a time.
#include "cli/command.h"

namespace zam::cli {

// The command prints to stdout. Throws UsageError, io::SceneError, host::ControlError, host::PluginError and
// Interrupted.
Command add_explain(CLI::App& app);

}  // namespace zam::cli
