#pragma once
// A value over time: constant, or keyframed with hold and linear interpolation. Times are composition frames
// and may be fractions of one.
#include <algorithm>
#include <array>
#include <vector>

namespace zam::host {

struct Vec3 {
    double x = 0.0, y = 0.0, z = 0.0;
    friend bool operator==(const Vec3&, const Vec3&) = default;
};

struct Color {  // fractions, 1.0 = full
    double red = 1.0, green = 1.0, blue = 1.0;
    friend bool operator==(const Color&, const Color&) = default;
};

inline double mix(double a, double b, double t) { return a + (b - a) * t; }
inline Vec3 mix(const Vec3& a, const Vec3& b, double t) {
    return {mix(a.x, b.x, t), mix(a.y, b.y, t), mix(a.z, b.z, t)};
}
inline Color mix(const Color& a, const Color& b, double t) {
    return {mix(a.red, b.red, t), mix(a.green, b.green, t), mix(a.blue, b.blue, t)};
}

enum class Interpolation { hold, linear };

template <class T>
struct Keyframe {
    double frame = 0.0;
    T value{};
    Interpolation interpolation = Interpolation::linear;  // from this key to the next
};

// Before the first key its value holds, after the last key that one's. Keys are sorted by frame, no two at
// one frame.
template <class T>
struct Animated {
    T constant{};                   // used when there are no keys
    std::vector<Keyframe<T>> keys;  // empty: the value does not vary

    Animated() = default;
    Animated(T value)
        : constant(std::move(value)) {}  // NOLINT: a plain value is an animated one that stands still

    [[nodiscard]] bool varies() const { return !keys.empty(); }

    [[nodiscard]] T at(double frame) const {
        if (keys.empty()) return constant;
        const auto next = std::upper_bound(keys.begin(), keys.end(), frame,
                                           [](double f, const Keyframe<T>& key) { return f < key.frame; });
        if (next == keys.begin()) return next->value;
        const Keyframe<T>& key = *std::prev(next);
        if (next == keys.end() || key.interpolation == Interpolation::hold) return key.value;
        return mix(key.value, next->value, (frame - key.frame) / (next->frame - key.frame));
    }
};

}  // namespace zam::host
