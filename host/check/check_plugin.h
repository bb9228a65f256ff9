#pragma once
// All checks of one plug-in file.
#include <chrono>
#include <string>

#include "host/check/report.h"

namespace zam::host {

struct CheckPlan {
    std::string file;                // a library, or a macOS bundle's folder
    std::chrono::seconds limit{60};  // of the process that drives it
    bool in_process = false;         // for debuggers: a crash ends this process
    // The command that runs drive_plugin(library, entry, journal), without these three arguments.
    std::vector<std::string> child_command;
};

[[nodiscard]] Report check_plugin(const CheckPlan& plan);

}  // namespace zam::host
