#pragma once
// zam --version
#include <string>

namespace zam::cli {

// The program's version, and what the plug-in beside it says of itself; that names the kind of processor its rows are
// made for.
[[nodiscard]] std::string version_text(const std::string& program_version);

}  // namespace zam::cli
