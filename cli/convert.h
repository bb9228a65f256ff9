#pragma once
// zam convert: any readable scene as a JSON composition.
#include "cli/command.h"

namespace zam::cli {

// Throws UsageError, io::SceneError and io::WriteError.
Command add_convert(CLI::App& app);

}  // namespace zam::cli
