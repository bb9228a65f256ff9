#pragma once
// JSON as a tree whose every value knows its place in the text, so that each message can name it.
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "io/scene_error.h"

namespace zam::io {

struct JsonValue {
    enum class Kind : std::uint8_t { null, boolean, number, string, array, object };

    Kind kind = Kind::null;
    bool truth = false;                  // booleans
    Place place;                         // first character of the value
    Place name_place;                    // of an object's member: its name
    double number = 0.0;                 // numbers, always finite
    std::string text;                    // strings
    std::string name;                    // of an object's member
    std::vector<JsonValue> children;     // of arrays and objects, in the order of the file
    std::vector<std::uint32_t> by_name;  // of large objects: the children in the order of their names

    [[nodiscard]] bool is(Kind wanted) const { return kind == wanted; }
    // A member by name; null when there is none or this is no object.
    [[nodiscard]] const JsonValue* find(std::string_view member) const;
    // "an object", "a number" ... for messages
    [[nodiscard]] const char* kind_name() const;
};

// Files larger, deeper or fuller than any scene are refused before they cost much.
inline constexpr std::size_t kLargestJson = std::size_t{64} << 20;  // bytes
inline constexpr int kDeepestJson = 64;                             // objects and arrays in each other
inline constexpr std::size_t kMostJsonValues = 2'000'000;

struct JsonDocument {
    std::string file;  // as the user named it
    JsonValue root;

    [[nodiscard]] std::string where(const JsonValue& value) const {
        return SceneError::describe(file, value.place);
    }
    [[nodiscard]] SceneError error(const JsonValue& value, const std::string& text,
                                   const std::string& hint) const {
        return {file, value.place, text, hint};
    }
    [[nodiscard]] SceneError error_at_name(const JsonValue& member, const std::string& text,
                                           const std::string& hint) const {
        return {file, member.name_place, text, hint};
    }
    // JSON pointer of a value of this document, found by its address; "/" for the root.
    [[nodiscard]] std::string pointer(const JsonValue& value) const;
};

// UTF-8 without comments; a name may stand only once in an object. Throws SceneError.
[[nodiscard]] JsonDocument parse_json(const std::string& file, std::string_view text);

}  // namespace zam::io
