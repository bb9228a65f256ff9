#include "cli/frame_pipeline.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <stdexcept>

namespace zam::cli {
namespace {

RenderedFrame rendered(int frame, std::size_t codes = 4) {
    RenderedFrame result{frame, std::to_string(frame), {}};
    result.image.argb.resize(codes);
    return result;
}

TEST(FramePipeline, TellsOfFramesInOrderThoughTheyEndOutOfOrder) {
    std::vector<int> told;
    std::atomic<int> worked = 0;
    {
        FramePipeline pipeline(
            4,
            [&](RenderedFrame& frame) {
                std::this_thread::sleep_for(std::chrono::milliseconds(frame.frame % 3 == 0 ? 8 : 1));
                ++worked;
            },
            [&](int frame, const std::string&) { told.push_back(frame); });
        for (int frame = 0; frame < 30; ++frame) pipeline.put(rendered(frame));
        pipeline.finish();
    }
    EXPECT_EQ(worked, 30);
    ASSERT_EQ(told.size(), 30u);
    for (int frame = 0; frame < 30; ++frame) EXPECT_EQ(told[static_cast<std::size_t>(frame)], frame);
}

TEST(FramePipeline, HoldsNoMoreFramesThanThreadsCanTakeAndFewerLargeOnes) {
    for (const auto& [codes, most] : {std::pair(4, 4), std::pair(200, 2)}) {  // 1000 bytes hold two of 400
        std::atomic<int> under_way = 0;
        FramePipeline pipeline(
            3,
            [&](RenderedFrame&) {
                std::this_thread::sleep_for(std::chrono::milliseconds(3));
                --under_way;
            },
            [](int, const std::string&) {}, 1000);
        for (int frame = 0; frame < 12; ++frame) {
            pipeline.put(rendered(frame, static_cast<std::size_t>(codes)));
            EXPECT_LE(++under_way, most);
        }
        pipeline.finish();
    }
}

TEST(FramePipeline, TheFirstFailureEndsTheRunAndFinishedFramesAreToldOf) {
    std::vector<int> told;
    std::atomic<int> worked = 0;
    FramePipeline pipeline(
        2,
        [&](RenderedFrame& frame) {
            if (frame.frame == 2) {
                std::this_thread::sleep_for(std::chrono::milliseconds(20));
                throw std::runtime_error("disk full");
            }
            ++worked;
        },
        [&](int frame, const std::string&) { told.push_back(frame); });
    std::string failure;
    try {
        for (int frame = 0; frame < 1000; ++frame) pipeline.put(rendered(frame));
        pipeline.finish();
    } catch (const std::runtime_error& error) {
        failure = error.what();
    }
    EXPECT_EQ(failure, "disk full");
    pipeline.drop();
    EXPECT_LT(worked, 1000);
    EXPECT_EQ(static_cast<int>(told.size()), worked);
    EXPECT_THAT(told, testing::Not(testing::Contains(2)));
}

TEST(FramePipeline, DroppingLeavesOutWhatWaitsAndDestroyingDoesNot) {
    for (const bool drop : {true, false}) {
        std::atomic<int> worked = 0;
        {
            FramePipeline pipeline(
                2,
                [&](RenderedFrame&) {
                    std::this_thread::sleep_for(std::chrono::milliseconds(30));
                    ++worked;
                },
                [](int, const std::string&) {});
            for (int frame = 0; frame < 3; ++frame) pipeline.put(rendered(frame));
            if (drop) pipeline.drop();
        }
        if (drop)
            EXPECT_LT(worked, 3);
        else
            EXPECT_EQ(worked, 3);
    }
}

}  // namespace
}  // namespace zam::cli
