#include "cli/interrupt.h"

#include <csignal>

namespace zam::cli {
namespace {

volatile std::sig_atomic_t g_caught = 0;

void remember(int signal) { g_caught = signal; }

}  // namespace

void catch_interrupts() {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction action {};
        sigaction(signal, nullptr, &action);
        if (action.sa_handler == SIG_IGN) continue;  // as nohup, and shells for background jobs, want it
        action = {};
        action.sa_handler = remember;
        action.sa_flags = static_cast<int>(SA_RESETHAND) | SA_RESTART;
        sigemptyset(&action.sa_mask);
        sigaction(signal, &action, nullptr);
    }
}

int caught_signal() { return g_caught; }

}  // namespace zam::cli
