// Rows on any threads, in any order, and given up half-way: the frames are the same bytes.
#include <algorithm>
#include <atomic>
#include <random>
#include <thread>

#include "tests/contract/zam_fixture.h"

namespace zam::test {
namespace {

constexpr Depth kDepths[] = {Depth::bits8, Depth::bits16};

// Both kinds of lights, a camera and, by name, some lights with a reach of their own. `turn` changes all of it.
Composition busy_scene(int width, int height, int turn = 0) {
    Composition comp = make_composition(width, height);
    const double w = width, h = height;
    for (int i = 0; i < 4; ++i) {
        Layer& point = add_point(comp, {w * (0.1 + 0.25 * i), h * (0.3 + 0.1 * turn), 100.0 * i}, "Front");
        point.light.color = Color{1.0 - 0.2 * i, 0.4, 0.2 + 0.2 * i};
        point.light.intensity = 20.0 + 5 * turn;
        Layer& spot = add_spot(comp, {w * (0.9 - 0.25 * i), 0.05 * h, -50.0 * i}, {w * 0.5, h, 60.0}, "Back");
        spot.light.color = Color{0.3, 1.0 - 0.2 * i, 0.5};
        spot.light.cone_angle = 25.0 + 10 * i + turn;
        spot.light.cone_feather = 30.0 * i;
    }
    add_camera(comp, {w / 2, h / 2, -2.0 * w}, {w / 2, h / 2 + turn, 0}, 2.0 * w);
    return comp;
}

Frame lone_frame(const Composition& comp, Depth depth) {
    Frame frame = Running(comp, {.threads = 1}).render(0, {.depth = depth});
    EXPECT_TRUE(frame.outcome.ok());
    EXPECT_FALSE(is_black(frame));
    return frame;
}

// More of them than there are cores, than there are rows, and than the host ever starts.
TEST(Threads, AnyNumberOfThemGivesTheSameBytes) {
    for (const auto& [width, height] : {std::pair{480, 270}, {64, 9}}) {
        const Composition comp = busy_scene(width, height);
        for (const Depth depth : kDepths) {
            const Frame one = lone_frame(comp, depth);
            for (const int threads : {2, 7, 64, 1000}) {
                const Frame frame =
                    Running(comp, {.threads = threads, .row_pause = std::chrono::microseconds(20)})
                        .render(0, {.depth = depth});
                EXPECT_TRUE(frame.outcome.ok());
                EXPECT_EQ(frame.argb, one.argb) << threads;
            }
        }
    }
}

// One plug-in, several instances: they come, render and go while others are at work.
TEST(Threads, InstancesAtWorkAtOnceDoNotMix) {
    constexpr int kInstances = 4;
    std::vector<Composition> scenes;
    std::vector<Frame> expected;
    for (int i = 0; i < kInstances; ++i) {
        scenes.push_back(busy_scene(48 + 8 * i, 27, i));
        for (const Depth depth : kDepths) expected.push_back(lone_frame(scenes.back(), depth));
    }
    std::vector<std::thread> threads;
    for (int i = 0; i < kInstances; ++i) {
        threads.emplace_back([&, i] {
            for (int life = 0; life < 4; ++life) {
                Running running(scenes[static_cast<std::size_t>(i)], {.threads = 1 + i % 3});
                for (int k = 0; k < 6; ++k) {
                    const auto depth = static_cast<std::size_t>(k % 2);
                    const Frame frame = running.render(0, {.depth = kDepths[depth]});
                    EXPECT_TRUE(frame.outcome.ok());
                    EXPECT_EQ(frame.argb, expected[static_cast<std::size_t>(2 * i) + depth].argb) << i;
                }
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
}

// ---- a host with an iterate of its own

enum class Order { forward, backward, shuffled, twice, own_thread, many_threads, gives_up };
Order order = Order::forward;

template <class Row>
PF_Err each_row_on_threads(int threads, A_long rows, const Row& row) {
    std::vector<std::thread> pool;
    for (int i = 0; i < threads; ++i) {
        pool.emplace_back([&, i] {
            for (A_long y = i; y < rows; y += threads) EXPECT_EQ(row(y), PF_Err_NONE);
        });
    }
    for (std::thread& thread : pool) thread.join();
    return PF_Err_NONE;
}

PF_Err iterate_in_order(PF_InData*, A_long, A_long, PF_EffectWorld*, const PF_Rect* area, void* refcon,
                        PF_IteratePixel8Func function, PF_EffectWorld* dst) {
    const auto row = [&](A_long y) {
        auto* bytes =
            reinterpret_cast<std::uint8_t*>(dst->data) + static_cast<std::ptrdiff_t>(y) * dst->rowbytes;
        return function(refcon, area->left, y, nullptr, reinterpret_cast<PF_Pixel*>(bytes));
    };
    if (order == Order::own_thread) return each_row_on_threads(1, dst->height, row);
    if (order == Order::many_threads) return each_row_on_threads(16, dst->height, row);
    std::vector<A_long> rows;
    for (A_long y = 0; y < dst->height; ++y) rows.insert(rows.end(), order == Order::twice ? 2U : 1U, y);
    if (order == Order::backward) std::reverse(rows.begin(), rows.end());
    if (order == Order::shuffled || order == Order::twice)
        std::shuffle(rows.begin(), rows.end(), std::mt19937(7));
    if (order == Order::gives_up) rows.resize(rows.size() / 2);
    for (const A_long y : rows) EXPECT_EQ(row(y), PF_Err_NONE);
    return order == Order::gives_up ? PF_Err{PF_Interrupt_CANCEL} : PF_Err_NONE;
}

TEST(Threads, AHostMayCallRowsInAnyOrderTwiceAndFromThreadsOfItsOwn) {
    const Composition comp = busy_scene(96, 54);
    PF_UtilCallbacks own{};
    Running running(comp, {.amend_in_data = [&own](PF_InData& in_data) {
                        own = *in_data.utils;
                        own.iterate = iterate_in_order;
                        in_data.utils = &own;
                    }});
    for (const Depth depth : kDepths) {
        const Frame good = lone_frame(comp, depth);
        for (const Order each : {Order::backward, Order::shuffled, Order::twice, Order::own_thread,
                                 Order::many_threads, Order::gives_up, Order::forward}) {
            order = each;
            const Frame frame = running.render(0, {.depth = depth});
            const bool gives_up = each == Order::gives_up;
            EXPECT_EQ(frame.outcome.error, gives_up ? PF_Err{PF_Interrupt_CANCEL} : PF_Err_NONE);
            EXPECT_EQ(frame.outcome.reports, std::vector<std::string>{});
            EXPECT_EQ(frame.argb == good.argb, !gives_up) << static_cast<int>(each);
        }
    }
}

// ---- cancelling

// Rows are whole or untouched since the effect cleared the frame, everything is given back, and the next frame is as
// good as ever.
TEST(Threads, ACancelledFrameHarmsNoLaterOne) {
    const Composition comp = busy_scene(96, 54);
    for (const int threads : {1, 2, 16}) {
        std::atomic<int> rows_left{1000};
        Running running(comp, {.threads = threads,
                               .row_pause = std::chrono::microseconds(20),
                               .cancelled = [&] { return rows_left.fetch_sub(1) <= 0; }});
        for (const Depth depth : kDepths) {
            const Frame good = lone_frame(comp, depth);
            for (const int rows : {0, 1, 20, 53, 54}) {
                SCOPED_TRACE(::testing::Message() << rows << " rows on " << threads << " threads");
                rows_left = rows;
                const Frame frame = running.render(0, {.depth = depth});
                EXPECT_EQ(frame.outcome.error, rows < 54 ? PF_Err{PF_Interrupt_CANCEL} : PF_Err_NONE);
                EXPECT_FALSE(frame.outcome.thrown);
                EXPECT_EQ(frame.outcome.reports, std::vector<std::string>{});
                int drawn = 0;
                for (auto at = frame.argb.begin(), like = good.argb.begin(); at != frame.argb.end();
                     at += 96 * 4, like += 96 * 4) {
                    const bool whole = std::equal(at, at + 96 * 4, like);
                    drawn += whole;
                    EXPECT_TRUE(whole || std::all_of(at, at + 96 * 4, [](int code) { return code == 0; }));
                }
                EXPECT_EQ(drawn, rows);
                rows_left = 1000;
                EXPECT_EQ(running.render(0, {.depth = depth}).argb, good.argb);
            }
        }
    }
}

TEST(Threads, AnEffectThatAsksIsToldOfTheCancelling) {
    bool cancelled = false;
    Running running(make_composition(), {.cancelled = [&] { return cancelled; }});
    for (const bool now : {false, true, false}) {
        cancelled = now;
        const PF_Err expected = now ? PF_Err{PF_Interrupt_CANCEL} : PF_Err_NONE;
        const Outcome outcome = running.session.call_inside(0, [&](PF_InData* in_data, PF_OutData*) {
            EXPECT_EQ(in_data->inter.progress(in_data->effect_ref, 1, 2), expected);
            return in_data->inter.abort(in_data->effect_ref);
        });
        EXPECT_EQ(outcome.error, expected);
        EXPECT_EQ(outcome.reports, std::vector<std::string>{});
    }
}

}  // namespace
}  // namespace zam::test
