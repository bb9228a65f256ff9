#include "cli/frame_pipeline.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <stdexcept>

namespace zam::cli {
namespace {

using std::chrono::milliseconds;

// A pipeline whose frames take their time, and what became of them.
struct Watched {
    Watched(int threads, const std::function<milliseconds(int frame)>& time, std::size_t most_bytes = 1 << 30)
        : pipeline(
              threads,
              [this, time](const RenderedFrame& frame) {
                  std::this_thread::sleep_for(time(frame.frame));
                  --under_way;
                  if (frame.frame == fails) throw std::runtime_error("disk full");
                  ++worked;
              },
              [this](int frame, const std::string&) { told.push_back(frame); }, most_bytes) {}

    void put(int frames, std::size_t codes = 4) {
        for (int frame = 0; frame < frames; ++frame) {
            RenderedFrame rendered{frame, std::to_string(frame), {}};
            rendered.image.argb.resize(codes);
            pipeline.put(std::move(rendered));
            most_under_way = std::max(most_under_way, ++under_way);
        }
    }

    int fails = -1, most_under_way = 0;
    std::vector<int> told;
    std::atomic<int> worked = 0, under_way = 0;
    FramePipeline pipeline;
};

TEST(FramePipeline, TellsOfFramesInOrderThoughTheyEndOutOfOrder) {
    Watched run(4, [](int frame) { return milliseconds(frame % 3 == 0 ? 8 : 1); });
    run.put(30);
    run.pipeline.finish();
    EXPECT_EQ(run.worked, 30);
    ASSERT_EQ(run.told.size(), 30u);
    EXPECT_TRUE(std::is_sorted(run.told.begin(), run.told.end()));
}

TEST(FramePipeline, HoldsNoMoreFramesThanThreadsCanTakeAndFewerLargeOnes) {
    for (const auto& [codes, most] : {std::pair(4u, 4), std::pair(200u, 2)}) {  // 1000 bytes hold two of 400
        Watched run(
            3, [](int) { return milliseconds(3); }, 1000);
        run.put(12, codes);
        EXPECT_LE(run.most_under_way, most);
        run.pipeline.finish();
    }
}

TEST(FramePipeline, TheFirstFailureEndsTheRunAndFinishedFramesAreToldOf) {
    Watched run(2, [](int frame) { return milliseconds(frame == 2 ? 20 : 0); });
    run.fails = 2;
    const auto put_all = [&] {
        run.put(1000);
        run.pipeline.finish();
    };
    EXPECT_THAT(put_all, testing::ThrowsMessage<std::runtime_error>("disk full"));
    run.pipeline.drop();
    EXPECT_LT(run.worked, 1000);
    EXPECT_EQ(static_cast<int>(run.told.size()), run.worked);
    EXPECT_THAT(run.told, testing::Not(testing::Contains(2)));
}

TEST(FramePipeline, DroppingLeavesOutWhatWaitsAndDestroyingDoesNot) {
    for (const bool drop : {true, false}) {
        std::atomic<int> worked = 0;
        {
            Watched run(2, [&](int) { return ++worked, milliseconds(30); });
            run.put(3);
            if (drop) run.pipeline.drop();
        }
        EXPECT_EQ(worked < 3, drop);
    }
}

}  // namespace
}  // namespace zam::cli
