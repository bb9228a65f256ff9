#pragma once
// Paths from names, which the program keeps in UTF-8.
#include <filesystem>
#include <string>

namespace zam::host {

// On Windows std::filesystem takes a plain string for the C locale's characters, and gives UTF-8 back.
[[nodiscard]] inline std::filesystem::path utf8_path(const std::string& name) {
    try {
        return std::u8string(name.begin(), name.end());
    } catch (const std::filesystem::filesystem_error&) {  // it is no UTF-8
        return name;
    }
}

}  // namespace zam::host
