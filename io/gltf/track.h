#pragma once
// One animated value of a glTF file over time.
#include <array>
#include <vector>

#include "io/gltf/container.h"

namespace zam::io::gltf {

// What the numbers of a track mean, and so how many there are and what lies between two keys.
enum class Shape {
    truth,     // 0 or another number; always in steps
    scalar,    //
    vector,    // x, y, z or red, green, blue
    rotation,  // a quaternion x, y, z, w
};

class Track {
  public:
    enum class Interpolation { step, linear, cubic_spline };
    using Value = std::array<double, 4>;  // as many as the shape has, then zeros

    // Reads times and values out of the sampler's accessors; throws SceneError.
    Track(const Container& file, const JsonValue& sampler, Shape shape);

    [[nodiscard]] bool steps() const { return interpolation_ == Interpolation::step; }
    [[nodiscard]] double last_second() const { return times_.back(); }
    // What at() costs, in the units of Timeline::count_work.
    [[nodiscard]] double work() const;
    // Before the first time the first value holds, after the last time the last. Rotations are unit
    // quaternions.
    [[nodiscard]] Value at(double seconds) const;

  private:
    [[nodiscard]] Value value(std::size_t index) const;
    [[nodiscard]] Value cubic(std::size_t before, double t, double span) const;

    Shape shape_;
    Interpolation interpolation_ = Interpolation::linear;
    std::vector<double> times_;  // seconds, ascending
    std::vector<Value> values_;  // one for each time; for cubic splines in-tangent, value, out-tangent
};

// The unit quaternion between two, along the shorter arc.
[[nodiscard]] Track::Value slerp(const Track::Value& from, Track::Value to, double t);

}  // namespace zam::io::gltf
