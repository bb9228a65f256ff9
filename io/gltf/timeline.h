#pragma once
// Sampling of animated values at the frames of a composition.
#include <cstdint>
#include <optional>
#include <string>

#include "host/composition/animated.h"
#include "host/composition/composition.h"
#include "io/gltf/track.h"

namespace zam::io::gltf {

enum class Variation { still, steps, moves };  // each includes those before it

// What a frame costs, in units of some 10 ns: a node on the way to the outside, and the values of a layer.
inline constexpr double kNodeWork = 2.0, kLayerWork = 15.0;

inline Variation variation_of(const std::optional<Track>& track) {
    return !track ? Variation::still : track->steps() ? Variation::steps : Variation::moves;
}

// The frames from 0 s to the last key, that key's frame included. Hostile files ask for more work and memory
// than a scene is worth; both are counted here.
class Timeline {
  public:
    // `file` is for messages. Throws SceneError when there are too many frames.
    Timeline(const std::string& file, double last_second, const host::Ratio& frame_rate);

    [[nodiscard]] int frames() const { return frames_; }
    [[nodiscard]] double seconds(int frame) const { return frame / frames_per_second_; }
    // How many of the frames differ for something that varies like this.
    [[nodiscard]] int frames(Variation variation) const {
        return variation == Variation::still ? 1 : frames_;
    }
    // Counts work that is about to be done, or keys that are kept; both throw SceneError.
    void count_work(double units);
    void count_keys(std::size_t keys);

  private:
    std::string file_;
    double frames_per_second_ = 24.0;
    int frames_ = 1;
    double work_ = 0.0;
    std::size_t keys_ = 0;
};

// Makes a composition's value out of samples, which come in the order of the frames.
template <class T>
class Samples {
  public:
    explicit Samples(Variation variation) : variation_(variation) {}

    // `jump`: the value changes here at once, whatever its variation.
    void add(int frame, const T& value, bool jump = false) {
        auto& keys = result_.keys;
        if (keys.empty()) result_.constant = value;
        if (!keys.empty() && variation_ == Variation::still) return;
        if (variation_ == Variation::steps && !keys.empty() && keys.back().value == value) return;
        if (jump) keys.back().interpolation = host::Interpolation::hold;
        differ_ = differ_ || !(value == result_.constant);
        keys.push_back(
            {static_cast<double>(frame), value,
             variation_ == Variation::steps ? host::Interpolation::hold : host::Interpolation::linear});
    }
    // Without keys when all samples were the same.
    [[nodiscard]] host::Animated<T> take() {
        return differ_ ? std::move(result_) : host::Animated<T>(result_.constant);
    }

  private:
    Variation variation_;
    host::Animated<T> result_;
    bool differ_ = false;
};

}  // namespace zam::io::gltf
