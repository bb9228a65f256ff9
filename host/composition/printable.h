#pragma once
// Texts out of files, made fit for messages. A name in a scene may hold anything, and what reaches a terminal must not
// command it.
#include <string>
#include <string_view>

namespace zam::host {

// UTF-8 with a question mark for every control character (C0, DEL, C1) and for every byte that belongs to none.
[[nodiscard]] std::string printable(std::string_view text);

// At most `longest` bytes of UTF-8, never cut inside of a character, and "..." for what is left out.
[[nodiscard]] std::string shorten(std::string_view text, std::size_t longest);

// `text` in double quotes, printable, long texts cut.
[[nodiscard]] std::string quote(std::string_view text);

}  // namespace zam::host
