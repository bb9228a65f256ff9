#include "host/runner/cores.h"

#include <gtest/gtest.h>
#include <sched.h>
#include <unistd.h>

#include <fstream>
#include <thread>

namespace zam::host {
namespace {

namespace fs = std::filesystem;

TEST(Cores, TheTightestGroupOnTheWayCounts) {
    const fs::path root = fs::temp_directory_path() / ("zam_cores_" + std::to_string(getpid()));
    fs::create_directories(root / "farm/job");
    const std::string membership = "9:cpu:/else\n0::/farm/job\n";
    EXPECT_EQ(granted_cores(root, membership), std::nullopt);
    std::ofstream(root / "farm/job/cpu.max") << "max 100000\n";
    EXPECT_EQ(granted_cores(root, membership), std::nullopt);
    std::ofstream(root / "farm/cpu.max") << "250000 100000\n";
    EXPECT_EQ(granted_cores(root, membership), 2.5);
    std::ofstream(root / "farm/job/cpu.max") << "400000 100000\n";
    EXPECT_EQ(granted_cores(root, membership), 2.5);
    EXPECT_EQ(granted_cores(root, "0::/\n"), std::nullopt) << "of groups that it is not in";
    EXPECT_EQ(granted_cores(root, "9:cpu:/farm/job\n"), std::nullopt);
    // The older version: a hierarchy for each controller, and -1 for no limit.
    fs::create_directories(root / "cpu,cpuacct/job");
    const std::string older = "4:cpu,cpuacct:/job\n3:memory:/farm\n";
    std::ofstream(root / "cpu,cpuacct/job/cpu.cfs_quota_us") << "-1\n";
    std::ofstream(root / "cpu,cpuacct/job/cpu.cfs_period_us") << "100000\n";
    EXPECT_EQ(granted_cores(root, older), std::nullopt);
    std::ofstream(root / "cpu,cpuacct/job/cpu.cfs_quota_us") << "150000\n";
    EXPECT_EQ(granted_cores(root, older), 1.5);
    fs::remove_all(root);
}

TEST(Cores, TheAffinityMaskCounts) {
    // On a thread of its own, for the mask is the thread's.
    std::thread([] {
        cpu_set_t all, one;
        ASSERT_EQ(sched_getaffinity(0, sizeof all, &all), 0);
        EXPECT_LE(available_cores(), CPU_COUNT(&all));
        CPU_ZERO(&one);
        for (int cpu = 0; CPU_COUNT(&one) == 0; ++cpu)
            if (CPU_ISSET(cpu, &all)) CPU_SET(cpu, &one);
        ASSERT_EQ(sched_setaffinity(0, sizeof one, &one), 0);
        EXPECT_EQ(available_cores(), 1);
    }).join();
}

}  // namespace
}  // namespace zam::host
