#include "cli/messages.h"

#include <cstdio>

namespace zam::cli {
namespace {

void print(const std::string& kind, const std::string& text) {
    std::string prefix = "zam: " + kind;
    for (const std::string& line : message_lines(text)) {
        std::fprintf(stderr, "%s%s\n", prefix.c_str(), line.c_str());
        prefix = "zam: ";
    }
}

}  // namespace

std::vector<std::string> message_lines(const std::string& text) {
    std::vector<std::string> lines;
    for (std::size_t at = 0; at <= text.size();) {
        const std::size_t end = std::min(text.find('\n', at), text.size());
        if (end > at) lines.push_back(text.substr(at, end - at));
        at = end + 1;
    }
    if (lines.size() == 1)
        if (const auto at = lines[0].rfind("; "); at != std::string::npos) {
            lines.push_back("hint: " + lines[0].substr(at + 2));
            lines[0].resize(at);
        }
    return lines;
}

void print_error(const std::string& text) { print("", text); }
void print_warning(const std::string& text) { print("warning: ", text); }
void print_note(const std::string& text) { print("note: ", text); }

}  // namespace zam::cli
