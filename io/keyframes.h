#pragma once
// Values that may vary over time: constant, keyframed, or sampled once per frame.
//
//     120
//     {"keys": [[0, 0], [12, 100, "hold"], [20, 60, {"ease_in": [0, 33.3], "ease_out": [-40, 20]}]]}
//     {"samples": [0, 8.5, 16.9, 25], "from": 10}
//
// Samples become keys with straight lines between them. All functions throw SceneError at the place of what
// is wrong.
#include <optional>
#include <string>
#include <vector>

#include "host/composition/composition.h"
#include "io/json_document.h"
#include "io/values.h"

namespace zam::io {

// True for an object with a member "keys" or "samples".
[[nodiscard]] bool is_animated(const JsonValue& value);

struct RawKey {
    double frame = 0.0;
    const JsonValue* value = nullptr;
    host::Interpolation interpolation = host::Interpolation::linear;
    std::optional<host::Ease> ease_in = {}, ease_out = {};
};

// In place of a frame rate: what cannot be eased, because it is no number, point or colour.
inline constexpr double kNoEases = 0.0;

// The keys as they stand: at least one, ascending. Speeds stand in units per second and come in units per
// frame.
[[nodiscard]] std::vector<RawKey> read_keys(const JsonDocument& document, const JsonValue& value,
                                            const std::string& subject, double frame_rate);

// `read_one` turns a JsonValue into a T.
template <class T, class ReadOne>
[[nodiscard]] host::Animated<T> read_animated(const JsonDocument& document, const JsonValue& value,
                                              const std::string& subject, double frame_rate,
                                              ReadOne read_one) {
    host::Animated<T> result;
    if (!is_animated(value)) {
        result.constant = read_one(value);
        return result;
    }
    for (const RawKey& key : read_keys(document, value, subject, frame_rate))
        result.keys.push_back(
            {key.frame, read_one(*key.value), key.interpolation, key.ease_in, key.ease_out});
    result.constant = result.keys.front().value;
    return result;
}

[[nodiscard]] host::Animated<double> read_animated_number(const JsonDocument& document,
                                                          const JsonValue& value, const std::string& subject,
                                                          double frame_rate, const NumberRule& rule);
[[nodiscard]] host::Animated<host::Vec3> read_animated_vec3(const JsonDocument& document,
                                                            const JsonValue& value,
                                                            const std::string& subject, double frame_rate,
                                                            const NumberRule& rule);
[[nodiscard]] host::Animated<host::Color> read_animated_color(const JsonDocument& document,
                                                              const JsonValue& value,
                                                              const std::string& subject, double frame_rate);
// Twelve numbers: where the x, y and z axes of a layer point in the world, and its position there.
[[nodiscard]] host::Animated<host::Matrix> read_animated_matrix(const JsonDocument& document,
                                                                const JsonValue& value,
                                                                const std::string& subject);

}  // namespace zam::io
