#include <sys/ioctl.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <initializer_list>
#include <string>

#include "cli/platform.h"

namespace zam::cli::platform {

void prepare_process() { std::signal(SIGXFSZ, SIG_IGN); }

bool is_terminal(std::FILE* stream) {
    const char* terminal = std::getenv("TERM");
    const bool moves = terminal && std::string(terminal) != "dumb" && *terminal != '\0';
    return isatty(fileno(stream)) && moves;
}

int terminal_columns(std::FILE* stream) {
    winsize size{};
    return ioctl(fileno(stream), TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
}

void on_first_interrupt(void (*handler)(int)) {
    // SIGXCPU: a batch system's limit is near. SIGPIPE: nobody reads any more what is told of the work.
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGXCPU, SIGPIPE}) {
        struct sigaction action {};
        sigaction(signal, nullptr, &action);
        if (action.sa_handler == SIG_IGN) continue;  // as nohup, and shells for background jobs, want it
        action = {};
        action.sa_handler = handler;
        action.sa_flags = SA_RESTART;
        if (signal != SIGPIPE) action.sa_flags |= static_cast<int>(SA_RESETHAND);  // it comes with every line
        sigemptyset(&action.sa_mask);
        sigaction(signal, &action, nullptr);
    }
}

}  // namespace zam::cli::platform
