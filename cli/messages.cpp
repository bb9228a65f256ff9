#include "cli/messages.h"

#include <cstdio>
#include <nlohmann/json.hpp>

#include "host/text.h"

namespace zam::cli {
namespace {

bool g_json = false;

nlohmann::ordered_json event_of(const char* kind, const std::string& text) {
    constexpr std::string_view kHint = "hint: ";
    nlohmann::ordered_json event = {{"event", kind}, {"message", ""}};
    std::string message;
    for (const std::string& line : message_lines(text)) {
        if (line.starts_with(kHint))
            event["hint"] = line.substr(kHint.size());
        else
            message += (message.empty() ? "" : "\n") + line;
    }
    event["message"] = message;
    return event;
}

void print(const std::string& prefix, const std::string& text) {
    std::string lines, start = "zam: " + prefix;
    for (const std::string& line : message_lines(text)) {
        lines += start + line + "\n";
        start = "zam: ";
    }
    std::fputs(lines.c_str(), stderr);
}

}  // namespace

std::vector<std::string> message_lines(const std::string& text) {
    std::vector<std::string> lines;
    for (std::size_t at = 0; at <= text.size();) {
        const std::size_t end = std::min(text.find('\n', at), text.size());
        if (end > at) lines.push_back(printable(std::string_view(text).substr(at, end - at)));
        at = end + 1;
    }
    if (lines.size() == 1)
        if (const auto at = lines[0].rfind("; "); at != std::string::npos) {
            lines.push_back("hint: " + lines[0].substr(at + 2));
            lines[0].resize(at);
        }
    return lines;
}

void tell_in_json() { g_json = true; }
bool telling_in_json() { return g_json; }

void print_event(const nlohmann::ordered_json& event) {
    // File names may be no UTF-8.
    const std::string line = event.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
    // JSON lets some control characters stand; they are within its texts alone.
    std::fprintf(stderr, "%s\n", printable(line).c_str());
    std::fflush(stderr);
}

void print_error(const std::string& text, int exit_code) {
    if (!g_json) return print("", text);
    nlohmann::ordered_json event = event_of("error", text);
    event["exit_code"] = exit_code;
    print_event(event);
}

void print_warning(const std::string& text) {
    g_json ? print_event(event_of("warning", text)) : print("warning: ", text);
}

void print_note(const std::string& text) {
    g_json ? print_event(event_of("note", text)) : print("note: ", text);
}

}  // namespace zam::cli
