#include "cli/stage_times.h"

#include <nlohmann/json.hpp>

namespace zam::cli {

nlohmann::ordered_json StageTimes::json() const {
    constexpr const char* kNames[kStages] = {"read_scene", "load_plugin", "render", "wait",
                                             "lay_over",   "encode",      "write"};
    const std::lock_guard lock(mutex_);
    nlohmann::ordered_json stages;
    for (int i = 0; i < kStages; ++i) stages[kNames[i]] = seconds_[i];
    return stages;
}

}  // namespace zam::cli
