#pragma once
// Being told to stop: SIGINT, SIGTERM, SIGHUP, SIGXCPU and SIGPIPE, or what the system has in their place.
#include <stdexcept>

namespace zam::cli {

// The work was given up because of a signal.
struct Interrupted : std::runtime_error {
    Interrupted(int caught, const std::string& text) : std::runtime_error(text), signal(caught) {}
    int signal;
};

// From now on the first of these signals is only remembered: the frame that is being rendered is given up, and the
// files that are being written come to a good end. The second one ends the program at once; it leaves no half-written
// file either, see io::WholeFile.
void catch_interrupts();

// The signal that was caught; 0: none. Any thread.
[[nodiscard]] int caught_signal();

}  // namespace zam::cli
