#include "io/json_layout.h"

#include <nlohmann/json.hpp>

namespace zam::io {
namespace {

using Json = nlohmann::ordered_json;

constexpr std::size_t kWidth = 118;  // of a line

std::string word(const Json& value) { return value.dump(-1, ' ', false, Json::error_handler_t::replace); }

void start_line(std::size_t indent, std::string& text) {
    text += '\n';
    text.append(indent, ' ');
}

// {"key": [1, 2]}, on one line, or its beginning when that is too long for any line.
void put_compact(const Json& value, std::string& text) {
    if (!value.is_structured()) {
        text += word(value);
        return;
    }
    text += value.is_array() ? '[' : '{';
    bool first = true;
    for (const auto& [name, child] : value.items()) {
        if (text.size() > kWidth) return;
        if (!first) text += ", ";
        first = false;
        if (value.is_object()) text += word(name) + ": ";
        put_compact(child, text);
    }
    text += value.is_array() ? ']' : '}';
}

std::string compact(const Json& value) {
    std::string text;
    put_compact(value, text);
    return text;
}

// `used` bytes of the line are taken already; further lines begin with `indent` spaces.
void put(const Json& value, std::size_t used, std::size_t indent, std::string& text) {
    const std::string line = compact(value);
    if (!value.is_structured() || used + line.size() + 1 <= kWidth) {
        text += line;
        return;
    }
    const bool array = value.is_array();
    const bool fill = array && !value.front().is_object();  // many numbers or keys to a line
    text += array ? '[' : '{';
    std::size_t column = kWidth;
    bool first = true;
    for (const auto& [name, child] : value.items()) {
        std::string label;
        if (!array) label = word(name) + ": ";
        const std::size_t width = compact(child).size() + 2;
        if (!first) text += ',';
        if (first || !fill || column + width > kWidth) {
            start_line(indent + 2, text);
            column = indent + 2;
        } else {
            text += ' ';
        }
        first = false;
        text += label;
        put(child, indent + 2 + label.size(), indent + 2, text);
        column += width;
    }
    start_line(indent, text);
    text += array ? ']' : '}';
}

}  // namespace

std::string layout(const Json& value) {
    std::string text;
    put(value, 0, 0, text);
    return text;
}

}  // namespace zam::io
