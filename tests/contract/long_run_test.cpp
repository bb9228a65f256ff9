// Thousands of frames in one process, each of another scene: nothing is kept, and nothing wears out. ZAM_FRAMES says
// how many; the figures are printed.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <numeric>
#include <random>
#include <string_view>

#include "tests/contract/odd_scenes.h"

#if defined(__has_feature)
#define ZAM_SANITIZED (__has_feature(address_sanitizer) || __has_feature(thread_sanitizer))
#else
#define ZAM_SANITIZED 0
#endif

namespace zam::test {
namespace {

constexpr int kScenes = 100;               // that are rendered in turn
constexpr int kLifeFrames = 500;           // after which the effect is taken off and applied anew
constexpr double kAllowedGrowthKib = 256;  // of resident memory, after a fifth of the run

// What of this process is in memory; 0 where that is not told, or where sanitizers or an emulator keep what is given
// back.
double resident_kib() {
    double kib = 0;
#if !ZAM_SANITIZED && !defined(ZAM_EMULATED)
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        if (word == "VmRSS:") status >> kib;
    }
#endif
    return kib;
}

std::size_t digest(const Frame& frame) {
    const auto* bytes = reinterpret_cast<const char*>(frame.argb.data());
    return std::hash<std::string_view>()({bytes, frame.argb.size() * sizeof frame.argb[0]});
}

TEST(LongRun, ChangingScenesKeepNothingAndTheSameSceneGivesTheSameFrame) {
    const char* asked = std::getenv("ZAM_FRAMES");
    const int frames = asked ? std::max(1, std::atoi(asked)) : 300;
    std::vector<std::size_t> first(kScenes, 0);
    std::vector<unsigned> order(kScenes);
    std::iota(order.begin(), order.end(), 0U);
    std::mt19937 shuffling(1);
    int black = 0;
    double warm = 0, most = 0;
    const auto start = std::chrono::steady_clock::now();
    std::optional<Running> running;
    for (int i = 0; i < frames; ++i) {
        if (i % kLifeFrames == 0) {
            if (running) {
                running->session.stop();
                EXPECT_EQ(running->session.reports(), std::vector<std::string>{});
            }
            running.emplace(make_composition(), SessionOptions{.threads = 3});
        }
        if (i % kScenes == 0) std::shuffle(order.begin(), order.end(), shuffling);
        const unsigned number = order[static_cast<std::size_t>(i % kScenes)];
        const Shot shot = odd_kinds().front().make(number);
        running->comp = shot.comp;  // in place of the scene before
        shot.apply(running->session);
        const Frame frame = running->render(0, shot.settings);
        // Suites, handles, locks, streams: what a frame keeps of them is reported when it ends.
        ASSERT_TRUE(frame.outcome.ok()) << i << ::testing::PrintToString(frame.outcome.reports);
        black += is_black(frame);
        if (first[number] == 0) first[number] = digest(frame);
        ASSERT_EQ(digest(frame), first[number]) << "scene " << number << " at frame " << i;
        if (i == frames / 5) warm = resident_kib();
        most = std::max(most, resident_kib());
    }
    EXPECT_LT(black, frames / 2);
    const double end = resident_kib();
    const std::chrono::duration<double> spent = std::chrono::steady_clock::now() - start;
    std::printf(
        "%d frames of %d scenes in %.1f s: %d black; resident %.0f KiB after %d, %.0f at the end, %.0f at "
        "most\n",
        frames, kScenes, spent.count(), black, warm, frames / 5, end, most);
    EXPECT_LE(end - warm, kAllowedGrowthKib);
}

}  // namespace
}  // namespace zam::test
