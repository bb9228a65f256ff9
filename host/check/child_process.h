#pragma once
// A process of our own that may crash or hang without harm.
#include <chrono>
#include <string>
#include <vector>

namespace zam::host {

struct ChildEnd {
    enum class How { exited, crashed, timed_out, not_started } how = How::not_started;
    int code = 0;      // when it exited
    std::string what;  // when it crashed or was not started: "signal 11 (Segmentation fault)"
};

// Runs a program with arguments (the first is the program's file) and waits for it, at most `limit`; then it is
// ended. It has no input, and its output goes nowhere.
[[nodiscard]] ChildEnd run_child(const std::vector<std::string>& command, std::chrono::milliseconds limit);

// For a process that loads code which may crash: no dialogue and no dump then.
void prepare_for_crashes();

[[nodiscard]] unsigned long this_process();

}  // namespace zam::host
