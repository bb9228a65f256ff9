#pragma once
// Single values of a composition file, read and checked one by one. Every function throws SceneError at the
// value's own place; `subject` begins the message, for example `layer "Key": intensity`.
#include <limits>
#include <string>
#include <vector>

#include "host/composition/composition.h"
#include "io/json_document.h"

namespace zam::io {

// What a number may be. The unit is for messages.
struct NumberRule {
    double min = -1e9, max = 1e9;  // beyond this no composition has sensible numbers
    const char* unit = "";         // "degrees"; may be empty
    const char* hint = "";         // the way out; empty: one is made of the range
};

inline constexpr NumberRule kAnyNumber{};
inline constexpr NumberRule kPixels{-1e9, 1e9, "pixels", ""};
inline constexpr NumberRule kDegrees{-1e9, 1e9, "degrees", ""};
inline constexpr NumberRule kFrames{-1e6, 1e6, "frames", "times are composition frames, not seconds"};

[[nodiscard]] double read_number(const JsonDocument& document, const JsonValue& value,
                                 const std::string& subject, const NumberRule& rule);
[[nodiscard]] int read_whole(const JsonDocument& document, const JsonValue& value, const std::string& subject,
                             const NumberRule& rule);
[[nodiscard]] bool read_flag(const JsonDocument& document, const JsonValue& value,
                             const std::string& subject);
[[nodiscard]] std::string read_text(const JsonDocument& document, const JsonValue& value,
                                    const std::string& subject);
// One of the given words.
[[nodiscard]] std::string read_choice(const JsonDocument& document, const JsonValue& value,
                                      const std::string& subject, const std::vector<std::string>& choices);
// [x, y, z]
[[nodiscard]] host::Vec3 read_vec3(const JsonDocument& document, const JsonValue& value,
                                   const std::string& subject, const NumberRule& rule);
// [red, green, blue] as fractions, or "#rrggbb"
[[nodiscard]] host::Color read_color(const JsonDocument& document, const JsonValue& value,
                                     const std::string& subject);
// A number such as 25 or 23.976, or [numerator, denominator].
[[nodiscard]] host::Ratio read_ratio(const JsonDocument& document, const JsonValue& value,
                                     const std::string& subject, const NumberRule& rule);
// The decimals that stand for a broadcast rate (23.976) as the exact ratio (24000/1001), others as they are.
[[nodiscard]] host::Ratio ratio_of(double value);

// Throws for a value that is no object, and for the first member that is not `allowed`, with the nearest name
// as a hint.
void check_members(const JsonDocument& document, const JsonValue& object, const std::string& subject,
                   const std::vector<std::string>& allowed);

}  // namespace zam::io
