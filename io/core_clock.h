#pragma once
// How long threads were on a core: what stages cost, however many of them share the cores.
#include <ctime>

namespace zam::io {

// Of the calling thread so far.
inline double core_seconds() {
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

}  // namespace zam::io
