#include "host/runner/row_pool.h"

#include <gtest/gtest.h>

#include <set>

namespace zam::host {
namespace {

TEST(RowPool, VisitsEachRowOnceOnSeveralThreadsPassAfterPass) {
    for (const int threads : {1, 3}) {
        RowPool pool(threads);
        for (int pass = 0; pass < 200; ++pass) {
            std::vector<std::atomic<int>> visits(40);
            EXPECT_EQ(pool.run(5, 40, [&](A_long y) { return visits[static_cast<std::size_t>(y)]++, 0; }), 0);
            for (std::size_t y = 0; y < visits.size(); ++y) ASSERT_EQ(visits[y], y < 5 ? 0 : 1) << y;
        }
    }
    RowPool pool(2);
    std::mutex mutex;
    std::condition_variable both;
    std::set<std::thread::id> seen;
    // Each row waits until two threads are at work: ends only if there are two.
    pool.run(0, 2, [&](A_long) {
        std::unique_lock lock(mutex);
        seen.insert(std::this_thread::get_id());
        both.notify_all();
        return both.wait_for(lock, std::chrono::seconds(20), [&] { return seen.size() == 2; }) ? 0 : 1;
    });
    EXPECT_EQ(seen.size(), 2U);
}

TEST(RowPool, TheFirstErrorEndsThePass) {
    RowPool pool(1);
    int rows = 0;
    EXPECT_EQ(pool.run(0, 1000, [&](A_long y) { return ++rows, y == 3 ? 517 : 0; }), 517);
    EXPECT_EQ(rows, 4);
    EXPECT_EQ(pool.run(0, 3, [](A_long) { return 0; }), 0);  // forgotten by the next pass
}

TEST(RowPool, APassWithinAPassRunsOnItsOwnThread) {
    RowPool pool(2);
    std::atomic<int> inner{0};
    EXPECT_EQ(pool.run(0, 8, [&](A_long) { return pool.run(0, 4, [&](A_long) { return ++inner, 0; }); }), 0);
    EXPECT_EQ(inner, 32);
}

}  // namespace
}  // namespace zam::host
