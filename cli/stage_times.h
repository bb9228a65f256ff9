#pragma once
// How long each stage of a run was at work, in seconds: laying over, encoding and writing, which several threads do at
// once, on a core, the others on the wall's clock. Stages overlap, so their sum may exceed the run's time.
#include <chrono>
#include <mutex>
#include <nlohmann/json_fwd.hpp>

namespace zam::cli {

class StageTimes {
  public:
    enum Stage { read_scene, load_plugin, render, wait, lay_over, encode, write, kStages };

    void add(Stage stage, double seconds) {
        const std::lock_guard lock(mutex_);
        seconds_[stage] += seconds;
    }

    // Calls `work` and adds its time.
    template <class Work>
    decltype(auto) measure(Stage stage, Work&& work) {
        const struct Clock {
            StageTimes& times;
            Stage stage;
            std::chrono::steady_clock::time_point start = std::chrono::steady_clock::now();
            ~Clock() {
                times.add(stage,
                          std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
            }
        } clock{*this, stage};
        return work();
    }

    // {"read_scene": 0.01, ...}; "wait" is for room among the frames under way.
    [[nodiscard]] nlohmann::ordered_json json() const;

  private:
    mutable std::mutex mutex_;
    double seconds_[kStages] = {};
};

}  // namespace zam::cli
