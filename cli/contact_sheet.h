#pragma once
// zam contact-sheet: frames of a scene as small pictures in one file.
#include "cli/command.h"

namespace zam::cli {

// The command throws UsageError, io::SceneError, io::WriteError, host::ControlError (of the scene), host::PluginError
// or Interrupted.
Command add_contact_sheet(CLI::App& app);

}  // namespace zam::cli
