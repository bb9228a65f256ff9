#pragma once
// What messages are made of. A name in a scene may hold anything, and what reaches a terminal must not command it.
#include <string>
#include <string_view>
#include <vector>

namespace zam {

// UTF-8 with a question mark for every control character (C0, DEL, C1) and for every byte that belongs to none.
[[nodiscard]] std::string printable(std::string_view text);

// At most `longest` bytes of UTF-8, never cut inside of a character, and "..." for what is left out.
[[nodiscard]] std::string shorten(std::string_view text, std::size_t longest);

// `text` in double quotes, printable, long texts cut.
[[nodiscard]] std::string quote(std::string_view text);

// With small letters in place of A to Z.
[[nodiscard]] std::string lower(std::string_view text);

// The candidate that `word` most likely was meant to be; empty when none is near. Case does not count.
[[nodiscard]] std::string nearest(std::string_view word, const std::vector<std::string>& candidates);

// As short as it reads back the same to ten digits: 190, 0.25, 1e+12.
[[nodiscard]] std::string format_number(double value);

// "a, b or c"
[[nodiscard]] std::string join_or(const std::vector<std::string>& words);

}  // namespace zam
