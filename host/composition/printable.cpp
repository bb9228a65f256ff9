#include "host/composition/printable.h"

#include <algorithm>

namespace zam::host {
namespace {

constexpr std::size_t kLongestQuote = 60;  // bytes of a quoted text before it is cut

// Bytes of the character that `text` begins with; 0 when it is none, or a control character.
std::size_t length_of_character(std::string_view text) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char first = byte(0);
    if (first < 0x80) return first < 0x20 || first == 0x7F ? 0 : 1;
    if (first < 0xC2 || first > 0xF4) return 0;
    const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    if (length > text.size()) return 0;
    for (std::size_t i = 1; i < length; ++i)
        if ((byte(i) & 0xC0) != 0x80) return 0;
    return first == 0xC2 && byte(1) < 0xA0 ? 0 : length;
}

}  // namespace

std::string printable(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
        const std::size_t length = length_of_character(text);
        if (length > 0)
            result.append(text, 0, length);
        else
            result += '?';
        // A control character of two bytes becomes one question mark.
        const bool c1 =
            text.size() > 1 && text[0] == '\xC2' && (static_cast<unsigned char>(text[1]) & 0xC0) == 0x80;
        text.remove_prefix(length > 0 ? length : c1 ? 2 : 1);
    }
    return result;
}

std::string shorten(std::string_view text, std::size_t longest) {
    if (text.size() <= longest) return std::string(text);
    std::size_t length = longest;
    while (length > 0 && (static_cast<unsigned char>(text[length]) & 0xC0) == 0x80) --length;
    return std::string(text.substr(0, length)) + "...";
}

std::string quote(std::string_view text) { return '"' + printable(shorten(text, kLongestQuote)) + '"'; }

}  // namespace zam::host
