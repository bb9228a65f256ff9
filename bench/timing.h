#pragma once
// Clocks, and measuring several things in turn so that a change of the machine's speed hits all of them.
#include <functional>
#include <vector>

namespace zam::bench {

// Seconds. The thread's CPU time does not count what others take away from it.
double WallSeconds();
double ThreadCpuSeconds();

struct Spread {
    double median = 0.0, low = 0.0, high = 0.0;
};
Spread SpreadOf(std::vector<double> values);

// Seconds per call, one value per round.
struct Timing {
    std::vector<double> cpu, wall;
};

// Calls every body in turn, `rounds` times; within a turn each body is repeated until a turn takes `least` seconds
// (one untimed call decides how often).
std::vector<Timing> Interleave(const std::vector<std::function<void()>>& bodies, int rounds, double least);

// Round by round.
Spread Scaled(const std::vector<double>& values, double factor);
Spread Ratio(const std::vector<double>& dividend, const std::vector<double>& divisor);

}  // namespace zam::bench
