#pragma once
// What the runner asks the operating system for; one file of definitions for each family.
#include <string>

namespace zam::host::platform {

// Loads the file of code at `path`, not one of that name elsewhere; null, and why not in `reason`.
[[nodiscard]] void* load_library(const std::string& path, std::string* reason);
[[nodiscard]] void* find_symbol(void* library, const char* name);  // null: it exports none of that name
void unload_library(void* library);

[[nodiscard]] std::string this_program();  // its file; empty when the system does not tell

// On which this process may run, at least 1.
[[nodiscard]] int usable_cores();

}  // namespace zam::host::platform
