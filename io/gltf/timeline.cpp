#include "io/gltf/timeline.h"

#include <cmath>

#include "host/text.h"
#include "io/scene_error.h"

namespace zam::io::gltf {
namespace {

constexpr int kMostFrames = 100'000;
constexpr double kMostWork = 2.5e8;           // some three seconds
constexpr std::size_t kMostKeys = 5'000'000;  // half a gigabyte of the largest, points
// Times are stored in single precision: a last key a thousandth of a frame early still counts.
constexpr double kFrameSlack = 1e-3;

}  // namespace

Timeline::Timeline(const std::string& file, double last_second, const host::Ratio& frame_rate)
    : file_(file), frames_per_second_(frame_rate.value()) {
    const double last = last_second * frames_per_second_;
    if (!(last < kMostFrames))
        throw SceneError(file_, {},
                         "the animation lasts " + format_number(last) + " frames, more than " +
                             std::to_string(kMostFrames),
                         "export a shorter range, or use fewer frames per second");
    frames_ = static_cast<int>(std::floor(std::max(last, 0.0) + kFrameSlack)) + 1;
}

void Timeline::count_work(double units) {
    work_ += units;
    if (work_ > kMostWork)
        throw SceneError(file_, {}, "too many animated lights, nodes above them and frames",
                         "export fewer lights or a shorter range, or use fewer frames per second");
}

void Timeline::count_keys(std::size_t keys) {
    keys_ += keys;
    if (keys_ > kMostKeys)
        throw SceneError(file_, {}, "too many animated lights and frames",
                         "export fewer lights or a shorter range, or use fewer frames per second");
}

}  // namespace zam::io::gltf
