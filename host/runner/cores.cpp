#include "host/runner/cores.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <sstream>

#include "host/runner/platform.h"

namespace zam::host {
namespace {

namespace fs = std::filesystem;

// The group of the version 2 hierarchy: the line "0::/path".
std::optional<std::string> group_in(const std::string& membership) {
    std::istringstream lines(membership);
    for (std::string line; std::getline(lines, line);)
        if (line.starts_with("0::/")) return line.substr(4);
    return std::nullopt;
}

// "quota period" in microseconds, or "max period".
std::optional<double> grant_of(const fs::path& folder) {
    std::ifstream file(folder / "cpu.max");
    double quota = 0.0, period = 0.0;
    if (!(file >> quota >> period) || quota <= 0.0 || period <= 0.0) return std::nullopt;
    return quota / period;
}

}  // namespace

std::optional<double> granted_cores(const fs::path& hierarchy, const std::string& membership) {
    const auto group = group_in(membership);
    if (!group) return std::nullopt;
    std::optional<double> least;
    fs::path folder = hierarchy;
    const auto look = [&] {
        if (const auto grant = grant_of(folder)) least = std::min(*grant, least.value_or(*grant));
    };
    look();
    for (const fs::path& name : fs::path(*group)) {
        folder /= name;
        look();
    }
    return least;
}

int available_cores() {
    const std::ifstream file("/proc/self/cgroup");
    std::ostringstream membership;
    membership << file.rdbuf();
    const auto grant = granted_cores("/sys/fs/cgroup", membership.str());
    const int cores = platform::usable_cores();
    return std::max(1, grant ? static_cast<int>(std::min<double>(cores, std::ceil(*grant))) : cores);
}

}  // namespace zam::host
