#pragma once
// How the program ends. The numbers are part of its interface.
#include <stdexcept>

namespace zam::cli {

enum class ExitCode {
    ok = 0,
    internal = 1,      // not the user's fault: out of memory, a fault of the program
    usage = 2,         // the command line
    bad_input = 3,     // a scene, the preset, or a plate
    plugin = 4,        // the plug-in cannot be loaded, answers with an error or fails a check
    cannot_write = 5,  // an image, a scene, or standard output
    signal = 128,      // plus the number of the signal that ended the work
};

inline constexpr const char* kExitCodes =
    "Exit codes:\n"
    "  0  all is well; every file that was asked for is on disk\n"
    "  1  internal error, or not enough memory\n"
    "  2  wrong usage of the command line\n"
    "  3  a scene, the preset or a plate cannot be read or used\n"
    "  4  the plug-in cannot be loaded, reports an error or fails a check\n"
    "  5  an image, a scene or what is printed cannot be written\n"
    "  128 + N  ended by signal N: 130 by Ctrl-C, 143 by kill\n";

// The end of a command that has told all that went wrong itself.
struct Told {
    ExitCode code;
};

// A command line that cannot be followed. The text may end in a line "hint: ...".
struct UsageError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

}  // namespace zam::cli
