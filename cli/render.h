#pragma once
// zam render: a scene through the plug-in into image files.
#include "cli/command.h"

namespace zam::cli {

// The command throws UsageError, io::SceneError, io::WriteError, host::ControlError (of the scene), host::PluginError
// or Interrupted; when it returns, every frame is on disk.
Command add_render(CLI::App& app);

}  // namespace zam::cli
