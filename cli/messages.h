#pragma once
// What the program tells on stderr: "zam: place: what is wrong", then "zam: hint: the way out"; or all of it as JSON,
// one object a line.
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

namespace zam::cli {

// The lines of a message, printable. A way out stands in a line of its own that begins with "hint: ", or behind the
// last "; " of a one-line text.
[[nodiscard]] std::vector<std::string> message_lines(const std::string& text);

// From now on every message is {"event": "error", "message": "...", "hint": "..."}, or "warning", or "note".
void tell_in_json();
[[nodiscard]] bool telling_in_json();

// One line of that kind; for what else happens. Flushed.
void print_event(const nlohmann::ordered_json& event);

void print_error(const std::string& text, int exit_code);
void print_warning(const std::string& text);
void print_note(const std::string& text);

}  // namespace zam::cli
