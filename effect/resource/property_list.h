#pragma once
// The effect's property list (PiPL): what a host reads of a plug-in file before it loads the code, from the same
// constants that PF_Cmd_GLOBAL_SETUP reports.
#include <cstdint>
#include <vector>

namespace zam::resource {

using Bytes = std::vector<std::uint8_t>;

enum class Platform { windows, macos };

inline constexpr int kPropertyListId = 16000;

// Property by property in the platform's own byte order and padding.
[[nodiscard]] Bytes property_list(Platform platform);

}  // namespace zam::resource
