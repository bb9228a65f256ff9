#pragma once
// How far a render is: a bar with the time left on a terminal, one line for each frame elsewhere, or an event of JSON.
#include <chrono>
#include <cstdio>
#include <mutex>
#include <string>

namespace zam::cli {

// "0:07", "1:02:30"
[[nodiscard]] std::string clock_text(double seconds);

// May be told from several threads.
class Progress {
  public:
    enum class Style { bar, lines, json, silent };

    // JSON if messages are; else a bar when `stream` is a terminal that can move its cursor.
    [[nodiscard]] static Style style_for(std::FILE* stream);

    Progress(std::FILE* stream, Style style, int total);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    // One more frame is in its file.
    void frame_done(int frame, const std::string& file);
    // Takes the bar away, for a message or at the end; the next frame draws it again.
    void clear();
    [[nodiscard]] double seconds() const;
    [[nodiscard]] int done() const;

  private:
    void draw(const std::string& file);
    [[nodiscard]] double seconds_left() const { return seconds() / done_ * (total_ - done_); }

    mutable std::mutex mutex_;
    std::FILE* stream_;
    Style style_;
    int total_, done_ = 0;
    bool drawn_ = false;
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

}  // namespace zam::cli
