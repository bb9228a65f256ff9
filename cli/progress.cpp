#include "cli/progress.h"

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>

#include "cli/messages.h"
#include "cli/platform.h"
#include "host/text.h"

namespace zam::cli {

std::string clock_text(double seconds) {
    const auto whole = static_cast<long>(std::lround(std::clamp(seconds, 0.0, 359999.0)));
    char text[32];
    if (whole >= 3600)
        std::snprintf(text, sizeof text, "%ld:%02ld:%02ld", whole / 3600, whole / 60 % 60, whole % 60);
    else
        std::snprintf(text, sizeof text, "%ld:%02ld", whole / 60, whole % 60);
    return text;
}

Progress::Style Progress::style_for(std::FILE* stream) {
    if (telling_in_json()) return Style::json;
    return platform::is_terminal(stream) ? Style::bar : Style::lines;
}

Progress::Progress(std::FILE* stream, Style style, int total)
    : stream_(stream), style_(style), total_(total) {
    if (style_ == Style::bar) draw("");
}

Progress::~Progress() { clear(); }

void Progress::frame_done(int frame, const std::string& file) {
    const std::lock_guard lock(mutex_);
    ++done_;
    if (style_ == Style::bar) draw(file);
    if (style_ == Style::lines) {
        std::fprintf(stream_, "frame %d (%d of %d): %s\n", frame, done_, total_, printable(file).c_str());
        std::fflush(stream_);
    }
    if (style_ == Style::json)
        print_event({{"event", "frame"},
                     {"frame", frame},
                     {"file", file},
                     {"done", done_},
                     {"total", total_},
                     {"elapsed", seconds()},
                     {"left", seconds_left()}});
}

void Progress::clear() {
    const std::lock_guard lock(mutex_);
    if (!drawn_) return;
    std::fputs("\r\x1b[K", stream_);
    std::fflush(stream_);
    drawn_ = false;
}

int Progress::done() const {
    const std::lock_guard lock(mutex_);
    return done_;
}

double Progress::seconds() const {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start_).count();
}

void Progress::draw(const std::string& file) {
    constexpr int kBar = 30;
    const int full = total_ > 0 ? static_cast<int>(static_cast<long>(kBar) * done_ / total_) : kBar;
    std::string line = "[";
    line.append(static_cast<std::size_t>(full), '#').append(static_cast<std::size_t>(kBar - full), '-');
    line.append("] ").append(std::to_string(done_)).append("/").append(std::to_string(total_));
    if (done_ > 0) line += "  " + clock_text(seconds_left()) + " left";
    if (!file.empty()) line += "  " + printable(file);
    // A line that wraps could not be taken back.
    const int columns = platform::terminal_columns(stream_);
    line.resize(std::min(line.size(), static_cast<std::size_t>(columns > 1 ? columns - 1 : 79)));
    std::fprintf(stream_, "\r\x1b[K%s", line.c_str());
    std::fflush(stream_);
    drawn_ = true;
}

}  // namespace zam::cli
