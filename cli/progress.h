#pragma once
// How far a render is: a bar with the time left on a terminal, one line for each frame elsewhere.
#include <chrono>
#include <cstdio>
#include <string>

namespace zam::cli {

// "0:07", "1:02:30"
[[nodiscard]] std::string clock_text(double seconds);

class Progress {
  public:
    enum class Style { bar, lines, silent };

    // A bar when `stream` is a terminal that can move its cursor.
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

  private:
    void draw(const std::string& file);

    std::FILE* stream_;
    Style style_;
    int total_, done_ = 0;
    bool drawn_ = false;
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

}  // namespace zam::cli
