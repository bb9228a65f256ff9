#include "io/text.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <numeric>

namespace zam::io {
namespace {

constexpr std::size_t kLongestWord = 64;  // longer words are not compared: the cost is quadratic

std::string lower(std::string_view text) {
    std::string result(text);
    for (char& c : result) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return result;
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

std::string nearest(std::string_view word, const std::vector<std::string>& candidates) {
    if (word.empty() || word.size() > kLongestWord) return {};
    const std::string wanted = lower(word);
    std::string best;
    std::size_t best_distance = wanted.size() / 3 + 1;  // this far off is no longer a slip of the finger
    for (const std::string& candidate : candidates) {
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

}  // namespace zam::io
