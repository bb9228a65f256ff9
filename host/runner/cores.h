#pragma once
// How many threads are worth starting.
#include <filesystem>
#include <optional>
#include <string>

namespace zam::host {

// Cores that this process may use, at least 1: those of its affinity mask, and no more than the processor time that
// its control groups grant it, rounded up.
[[nodiscard]] int available_cores();

// That grant, in cores: the least cpu.max on the way from a group up to the root of the hierarchy (version 2).
// `membership` is the text of /proc/self/cgroup. None when nothing limits it.
[[nodiscard]] std::optional<double> granted_cores(const std::filesystem::path& hierarchy,
                                                  const std::string& membership);

}  // namespace zam::host
