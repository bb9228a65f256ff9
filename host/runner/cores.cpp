#include "host/runner/cores.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <sstream>

#include "host/runner/platform.h"

namespace zam::host {
namespace {

namespace fs = std::filesystem;

// In microseconds: "quota period" or "max period" in one file of version 2, one file each in version 1.
std::optional<double> grant_of(const fs::path& folder) {
    double quota = 0.0, period = 0.0;
    std::ifstream file(folder / "cpu.max");
    if (!(file >> quota >> period)) {
        std::ifstream quota_file(folder / "cpu.cfs_quota_us"), period_file(folder / "cpu.cfs_period_us");
        if (!(quota_file >> quota && period_file >> period)) return std::nullopt;  // -1: no limit
    }
    if (quota <= 0.0 || period <= 0.0) return std::nullopt;
    return quota / period;
}

// Where a line of the membership leads: "0::/path" of version 2, or "4:cpu,cpuacct:/path" of version 1, whose
// hierarchies have a folder each, named as the line names them.
struct Group {
    fs::path root, path;
};

std::optional<Group> group_of(const fs::path& hierarchy, const std::string& line) {
    const auto first = line.find(':'), second = line.find(':', first + 1);
    if (second == std::string::npos || line.compare(second, 2, ":/") != 0) return std::nullopt;
    const std::string controllers = line.substr(first + 1, second - first - 1),
                      path = line.substr(second + 2);
    if (controllers.empty()) return Group{hierarchy, path};
    if (("," + controllers + ",").find(",cpu,") == std::string::npos) return std::nullopt;
    return Group{hierarchy / controllers, path};
}

}  // namespace

std::optional<double> granted_cores(const fs::path& hierarchy, const std::string& membership) {
    std::optional<double> least;
    std::istringstream lines(membership);
    for (std::string line; std::getline(lines, line);) {
        const auto group = group_of(hierarchy, line);
        if (!group) continue;
        fs::path folder = group->root;
        const auto look = [&] {
            if (const auto grant = grant_of(folder)) least = std::min(*grant, least.value_or(*grant));
        };
        look();
        for (const fs::path& name : group->path) {
            folder /= name;
            look();
        }
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

int thread_count(int asked) { return std::clamp(asked == 0 ? available_cores() : asked, 1, 256); }

}  // namespace zam::host
