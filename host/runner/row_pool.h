#pragma once
// Threads that share out the rows of an image, kept from pass to pass.
#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

#include "hostapi/types.h"

namespace zam::host {

class RowPool {
  public:
    // `threads` includes the calling one; 0 stands for one per available core. They start with the first
    // pass.
    explicit RowPool(int threads);
    ~RowPool();
    RowPool(const RowPool&) = delete;
    RowPool& operator=(const RowPool&) = delete;

    // Calls `row` once for each y from first to last - 1, in no promised order, on several threads. The first
    // result that is not 0 ends the pass and is returned. `row` must not throw. A pass that is started from
    // within another one runs on its caller's thread alone.
    A_Err run(A_long first, A_long last, const std::function<A_Err(A_long)>& row);

    [[nodiscard]] int threads() const { return threads_; }

  private:
    void work(std::uint64_t seen);
    void start_workers();
    void take_rows();

    const int threads_;
    std::vector<std::thread> workers_;
    std::mutex mutex_;
    std::condition_variable wake_, done_;
    std::uint64_t pass_ = 0;
    int busy_ = 0;
    bool stop_ = false;
    std::atomic<bool> running_{false};
    // Of the running pass. Every row writes next_ and reads the others, so it has its cache lines to itself: two of
    // them, for processors that fetch them in pairs.
    static constexpr std::size_t kApart = 128;
    alignas(kApart) const std::function<A_Err(A_long)>* row_ = nullptr;
    A_long last_ = 0;
    std::atomic<A_Err> result_{0};
    alignas(kApart) std::atomic<std::int64_t> next_{0};
};

}  // namespace zam::host
