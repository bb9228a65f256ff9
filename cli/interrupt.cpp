#include "cli/interrupt.h"

#include <atomic>

#include "cli/platform.h"

namespace zam::cli {
namespace {

// Read by the threads that render, too.
std::atomic<int> g_caught{0};
static_assert(std::atomic<int>::is_always_lock_free, "for signal handlers");

void remember(int signal) { g_caught.store(signal, std::memory_order_relaxed); }

}  // namespace

void catch_interrupts() { platform::on_first_interrupt(remember); }

int caught_signal() { return g_caught.load(std::memory_order_relaxed); }

}  // namespace zam::cli
