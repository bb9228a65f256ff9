#include "cli/frame_pipeline.h"

#include <algorithm>
#include <system_error>

namespace zam::cli {
FramePipeline::FramePipeline(int threads, Work work, Done done, std::size_t most_bytes)
    : most_threads_(static_cast<std::size_t>(std::max(1, threads))),
      most_bytes_(most_bytes),
      work_(std::move(work)),
      done_(std::move(done)) {}

FramePipeline::~FramePipeline() { join(); }

void FramePipeline::put(RenderedFrame frame) {
    std::unique_lock lock(mutex_);
    const std::size_t bytes = std::max<std::size_t>(1, frame.image.argb.size() * sizeof(std::uint16_t));
    const std::size_t most = std::clamp<std::size_t>(most_bytes_ / bytes, 1, most_threads_ + 1);
    room_.wait(lock, [&] { return failure_ || under_way_ < most; });
    if (failure_) std::rethrow_exception(failure_);
    waiting_.push_back({put_++, std::move(frame)});
    ++under_way_;
    if (waiting_.size() > idle_ && threads_.size() < most_threads_) {
        try {
            threads_.emplace_back(&FramePipeline::work, this);
        } catch (const std::system_error&) {  // the system has no more of them
            if (threads_.empty()) return take(lock);
        }
    }
    lock.unlock();
    wake_.notify_one();
}

void FramePipeline::finish() {
    join();
    if (failure_) std::rethrow_exception(failure_);
}

void FramePipeline::drop() {
    {
        const std::lock_guard lock(mutex_);
        waiting_.clear();
    }
    join();
}

void FramePipeline::join() {
    {
        const std::lock_guard lock(mutex_);
        closed_ = true;
    }
    wake_.notify_all();
    for (std::thread& thread : threads_) thread.join();
    threads_.clear();
    // After a failure some were held back for a frame that never came.
    for (const auto& [place, told] : held_) done_(told.first, told.second);
    held_.clear();
}

void FramePipeline::work() {
    std::unique_lock lock(mutex_);
    while (true) {
        ++idle_;
        wake_.wait(lock, [this] { return closed_ || !waiting_.empty(); });
        --idle_;
        if (waiting_.empty()) return;
        take(lock);
    }
}

// Works on the frame that waits longest, with the lock released.
void FramePipeline::take(std::unique_lock<std::mutex>& lock) {
    Job job = std::move(waiting_.front());
    waiting_.pop_front();
    lock.unlock();
    std::exception_ptr failure;
    try {
        work_(job.frame);
    } catch (...) {
        failure = std::current_exception();
    }
    job.frame.image = {};
    lock.lock();
    --under_way_;
    if (!failure) {
        tell_of(job.place, job.frame.frame, std::move(job.frame.file));
    } else if (!failure_) {
        failure_ = failure;
        waiting_.clear();
    }
    room_.notify_all();
}

void FramePipeline::tell_of(std::size_t place, int frame, std::string file) {
    held_.emplace(place, std::pair(frame, std::move(file)));
    for (auto next = held_.find(next_told_); next != held_.end(); next = held_.find(++next_told_)) {
        done_(next->second.first, next->second.second);
        held_.erase(next);
    }
}

}  // namespace zam::cli
