#include "host/runner/row_pool.h"

#include <system_error>

#include "host/runner/cores.h"

namespace zam::host {

RowPool::RowPool(int threads) : threads_(thread_count(threads)) {}

RowPool::~RowPool() {
    {
        const std::lock_guard lock(mutex_);
        stop_ = true;
    }
    wake_.notify_all();
    for (std::thread& worker : workers_) worker.join();
}

A_Err RowPool::run(A_long first, A_long last, const std::function<A_Err(A_long)>& row) {
    if (running_.exchange(true)) {
        A_Err result = 0;
        for (A_long y = first; y < last && result == 0; ++y) result = row(y);
        return result;
    }
    const struct Done {
        std::atomic<bool>& running;
        ~Done() { running = false; }
    } done{running_};
    row_ = &row;
    last_ = last;
    next_ = first;
    result_ = 0;
    const bool alone = threads_ == 1 || last - first < 2;
    if (!alone) {
        const std::lock_guard lock(mutex_);
        start_workers();
        ++pass_;
        busy_ = static_cast<int>(workers_.size());
    }
    if (!alone) wake_.notify_all();
    take_rows();
    if (!alone) {
        std::unique_lock lock(mutex_);
        done_.wait(lock, [this] { return busy_ == 0; });
    }
    return result_;
}

// Does without what the system has no more of.
void RowPool::start_workers() {
    try {
        while (static_cast<int>(workers_.size()) < threads_ - 1)
            workers_.emplace_back(&RowPool::work, this, pass_);
    } catch (const std::system_error&) {
    }
}

void RowPool::take_rows() {
    while (result_.load(std::memory_order_relaxed) == 0) {
        const std::int64_t y = next_.fetch_add(1, std::memory_order_relaxed);
        if (y >= last_) return;
        const A_Err result = (*row_)(static_cast<A_long>(y));
        A_Err none = 0;
        if (result != 0) result_.compare_exchange_strong(none, result);
    }
}

void RowPool::work(std::uint64_t seen) {
    std::unique_lock lock(mutex_);
    while (true) {
        wake_.wait(lock, [&] { return stop_ || pass_ != seen; });
        if (stop_) return;
        seen = pass_;
        lock.unlock();
        take_rows();
        lock.lock();
        if (--busy_ == 0) done_.notify_one();
    }
}

}  // namespace zam::host
