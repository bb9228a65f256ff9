#pragma once
// zam --version
#include <string>

namespace zam::cli {

// "1.2.3"
[[nodiscard]] std::string program_version();

// The program's version, and what the plug-in beside it says of itself; that names the kind of processor its rows are
// made for.
[[nodiscard]] std::string version_text();

}  // namespace zam::cli
