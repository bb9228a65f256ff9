#pragma once
// Finished frames on their way into files, while the next ones are rendered.
#include <condition_variable>
#include <deque>
#include <exception>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "host/runner/session.h"

namespace zam::cli {

struct RenderedFrame {
    int frame = 0;
    std::string file;
    host::Frame image;
};

// Threads that put frames into files, several at a time; the caller's own where no other can be had. At most as many
// frames wait as threads could take, and fewer when frames are large, so that memory stays flat however much faster
// rendering is.
class FramePipeline {
  public:
    using Work = std::function<void(RenderedFrame&)>;  // on any of the threads; may throw
    using Done = std::function<void(int frame, const std::string& file)>;

    // `done` is told of finished frames one at a time, on any thread, in the order in which they were put in.
    // `most_bytes` may be taken by frames under way, and by a single one that is larger.
    FramePipeline(int threads, Work work, Done done, std::size_t most_bytes = std::size_t{1} << 30);
    // Finishes what was put in, unless finish() or drop() did, or a frame failed.
    ~FramePipeline();
    FramePipeline(const FramePipeline&) = delete;
    FramePipeline& operator=(const FramePipeline&) = delete;

    // Waits while too many frames are under way. Throws the first failure of a frame's work.
    void put(RenderedFrame frame);
    // Waits for all frames; throws as put() does.
    void finish();
    // Leaves waiting frames out and waits for those at work.
    void drop();

  private:
    struct Job {
        std::size_t place = 0;
        RenderedFrame frame;
    };
    void work();
    void take(std::unique_lock<std::mutex>& lock);
    void tell_of(std::size_t place, int frame, std::string file);
    void join();

    const std::size_t most_threads_, most_bytes_;
    const Work work_;
    const Done done_;
    std::vector<std::thread> threads_;
    std::mutex mutex_;
    std::condition_variable wake_, room_;
    std::deque<Job> waiting_;
    std::size_t put_ = 0, under_way_ = 0, idle_ = 0;
    bool closed_ = false;
    std::exception_ptr failure_;
    // Finished, but not told of: an earlier frame is still under way.
    std::map<std::size_t, std::pair<int, std::string>> held_;
    std::size_t next_told_ = 0;
};

}  // namespace zam::cli
