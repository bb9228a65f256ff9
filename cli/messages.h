#pragma once
// What the program tells on stderr: "zam: place: what is wrong", then "zam: hint: the way out".
#include <string>
#include <vector>

namespace zam::cli {

// The lines of a message. A way out stands in a line of its own that begins with "hint: ", or behind the last
// "; " of a one-line text.
[[nodiscard]] std::vector<std::string> message_lines(const std::string& text);

void print_error(const std::string& text);
void print_warning(const std::string& text);
void print_note(const std::string& text);

}  // namespace zam::cli
