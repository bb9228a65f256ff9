#pragma once
// One command of the program: a subcommand of the parser, and what it does once the command line is read.
#include <functional>

namespace CLI {
class App;
}

namespace zam::cli {

struct Command {
    CLI::App* parser = nullptr;
    std::function<void()> run;  // throws what main() knows an exit code for
    const char* example = "";   // the command as it could be typed
};

}  // namespace zam::cli
