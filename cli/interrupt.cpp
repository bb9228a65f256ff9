#include "cli/interrupt.h"

#include <csignal>

#include "cli/platform.h"

namespace zam::cli {
namespace {

volatile std::sig_atomic_t g_caught = 0;

void remember(int signal) { g_caught = signal; }

}  // namespace

void catch_interrupts() { platform::on_first_interrupt(remember); }

int caught_signal() { return g_caught; }

}  // namespace zam::cli
