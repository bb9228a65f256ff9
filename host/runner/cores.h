#pragma once
// How many threads are worth starting.
#include <filesystem>
#include <optional>
#include <string>

namespace zam::host {

// Cores that this process may use, at least 1: those of its affinity mask, and no more than the processor time that
// its control groups grant it, rounded up.
[[nodiscard]] int available_cores();

// How many threads to start when `asked` for so many, at most 256; 0 asks for one per available core.
[[nodiscard]] int thread_count(int asked);

// That grant, in cores: the least limit on the way from its group up to the root of the hierarchy, of either version
// of control groups. `membership` is the text of /proc/self/cgroup. None when nothing limits it.
[[nodiscard]] std::optional<double> granted_cores(const std::filesystem::path& hierarchy,
                                                  const std::string& membership);

}  // namespace zam::host
