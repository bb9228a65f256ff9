#pragma once
// A value over time: constant, or keyframed with hold, linear and eased interpolation. Times are composition
// frames and may be fractions of one.
#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <optional>
#include <type_traits>
#include <vector>

#include "host/composition/ease.h"

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

// What an ease counts in: for a number the difference, with its sign; for points and colours, which have one
// ease for all their parts, the distance.
inline double way_between(double a, double b) { return b - a; }
inline double way_between(const Vec3& a, const Vec3& b) {
    return std::hypot(b.x - a.x, b.y - a.y, b.z - a.z);
}
inline double way_between(const Color& a, const Color& b) {
    return std::hypot(b.red - a.red, b.green - a.green, b.blue - a.blue);
}

// The value at that point of the way from a to b. Colours do not overshoot what a colour can be.
inline double along(double a, double, double travelled, double) { return a + travelled; }
inline Vec3 along(const Vec3& a, const Vec3& b, double travelled, double way) {
    return way > 0.0 ? mix(a, b, travelled / way) : a;
}
inline Color along(const Color& a, const Color& b, double travelled, double way) {
    if (!(way > 0.0)) return a;
    const Color c = mix(a, b, travelled / way);
    return {std::clamp(c.red, 0.0, 1.0), std::clamp(c.green, 0.0, 1.0), std::clamp(c.blue, 0.0, 1.0)};
}

enum class Interpolation { hold, linear };

template <class T>
struct Keyframe {
    double frame = 0.0;
    T value{};
    Interpolation interpolation = Interpolation::linear;  // from this key to the next
    std::optional<Ease> ease_in = {}, ease_out = {};      // towards this key, and from it unless it holds
};

// Before the first key its value holds, after the last key that one's. Keys are sorted by frame, no two at
// one frame.
template <class T>
struct Animated {
    T constant{};                   // used when there are no keys
    std::vector<Keyframe<T>> keys;  // empty: the value does not vary
    // Numbers: what an ease may not overshoot.
    double least = -std::numeric_limits<double>::infinity(), most = std::numeric_limits<double>::infinity();

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
        const double span = next->frame - key.frame, part = (frame - key.frame) / span;
        if constexpr (requires { way_between(key.value, next->value); }) {  // matrices cannot be eased
            if (key.ease_out || next->ease_in) return eased(key, *next, part, span);
        }
        return mix(key.value, next->value, part);
    }

  private:
    [[nodiscard]] T eased(const Keyframe<T>& from, const Keyframe<T>& to, double part, double span) const {
        const double way = way_between(from.value, to.value);
        const double travelled = way_travelled(part, span, way, from.ease_out, to.ease_in);
        T value = along(from.value, to.value, travelled, way);
        if constexpr (std::is_same_v<T, double>) value = std::clamp(value, least, most);
        return value;
    }
};

}  // namespace zam::host
