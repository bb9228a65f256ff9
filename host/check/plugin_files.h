#pragma once
// Finding and reading the files that a plug-in consists of.
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "host/check/report.h"

namespace zam::host {

using FileBytes = std::vector<std::uint8_t>;

// None, and a failed Check::file, when it cannot be read.
[[nodiscard]] std::optional<FileBytes> read_plugin_file(const std::filesystem::path& path, Report& report);

struct Bundle {
    std::filesystem::path executable;
    std::filesystem::path resources;  // of the property resource; empty when there is none
};
// Checks a macOS bundle's layout; none when no executable can be told.
[[nodiscard]] std::optional<Bundle> read_bundle(const std::filesystem::path& folder, Report& report);

}  // namespace zam::host
