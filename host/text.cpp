#include "host/text.h"

#include <algorithm>
#include <cstdio>
#include <numeric>

namespace zam {
namespace {

constexpr std::size_t kLongestQuote = 60;  // bytes of a quoted text before it is cut
constexpr std::size_t kLongestWord = 64;   // longer words are not compared: the cost is quadratic

struct Character {
    std::size_t bytes;
    bool shown;
};

// What `text` begins with; a byte that belongs to no character stands for itself.
Character first_character(std::string_view text) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char first = byte(0);
    if (first < 0x80) return {1, first >= 0x20 && first != 0x7F};
    if (first < 0xC2 || first > 0xF4) return {1, false};
    const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    if (length > text.size()) return {1, false};
    for (std::size_t i = 1; i < length; ++i)
        if ((byte(i) & 0xC0) != 0x80) return {1, false};
    return {length, first != 0xC2 || byte(1) >= 0xA0};
}

// Edits (insert, remove, replace, swap neighbours) that turn `a` into `b`.
std::size_t edit_distance(const std::string& a, const std::string& b) {
    std::vector<std::size_t> before(b.size() + 1), last(b.size() + 1), row(b.size() + 1);
    std::iota(last.begin(), last.end(), std::size_t{0});
    for (std::size_t i = 1; i <= a.size(); ++i) {
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t replaced = last[j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1);
            row[j] = std::min({replaced, last[j] + 1, row[j - 1] + 1});
            const bool swapped = i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1];
            if (swapped) row[j] = std::min(row[j], before[j - 2] + 1);
        }
        before = last;
        last = row;
    }
    return last[b.size()];
}

}  // namespace

std::string printable(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
        const Character character = first_character(text);
        if (character.shown)
            result.append(text, 0, character.bytes);
        else
            result += '?';
        text.remove_prefix(character.bytes);
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

std::string lower(std::string_view text) {
    std::string result(text);
    for (char& c : result)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return result;
}

std::string nearest(std::string_view word, const std::vector<std::string>& candidates) {
    if (word.empty() || word.size() > kLongestWord) return {};
    const std::string wanted = lower(word);
    std::string best;
    std::size_t best_distance = wanted.size() / 3 + 1;  // this far off is no longer a slip of the finger
    for (const std::string& candidate : candidates) {
        if (candidate.size() > kLongestWord) continue;
        const std::size_t distance = edit_distance(wanted, lower(candidate));
        if (distance < best_distance && distance < std::max(candidate.size(), wanted.size())) {
            best_distance = distance;
            best = candidate;
        }
    }
    return best;
}

std::string format_number(double value) {
    char buffer[40];
    std::snprintf(buffer, sizeof buffer, "%.10g", value);
    return buffer;
}

std::string join_or(const std::vector<std::string>& words) {
    std::string result;
    for (std::size_t i = 0; i < words.size(); ++i) {
        if (i > 0) result += i + 1 == words.size() ? " or " : ", ";
        result += words[i];
    }
    return result;
}

}  // namespace zam
