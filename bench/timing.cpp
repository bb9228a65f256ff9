#include "bench/timing.h"

#include <algorithm>
#include <cmath>
#include <ctime>

namespace zam::bench {
namespace {

double Seconds(clockid_t clock) {
    timespec now{};
    clock_gettime(clock, &now);
    return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

}  // namespace

double WallSeconds() { return Seconds(CLOCK_MONOTONIC); }
double ThreadCpuSeconds() { return Seconds(CLOCK_THREAD_CPUTIME_ID); }

Spread SpreadOf(std::vector<double> values) {
    if (values.empty()) return {};
    std::sort(values.begin(), values.end());
    const std::size_t half = values.size() / 2;
    const double median = values.size() % 2 ? values[half] : 0.5 * (values[half - 1] + values[half]);
    return {median, values.front(), values.back()};
}

std::vector<Timing> Interleave(const std::vector<std::function<void()>>& bodies, int rounds, double least) {
    std::vector<int> repeats;
    for (const auto& body : bodies) {
        body();
        const double start = WallSeconds();
        body();
        const double once = std::max(1e-7, WallSeconds() - start);
        repeats.push_back(static_cast<int>(std::clamp(std::ceil(least / once), 1.0, 1e6)));
    }
    std::vector<Timing> timings(bodies.size());
    for (int round = 0; round < rounds; ++round) {
        for (std::size_t i = 0; i < bodies.size(); ++i) {
            const double wall = WallSeconds(), cpu = ThreadCpuSeconds();
            for (int n = 0; n < repeats[i]; ++n) bodies[i]();
            timings[i].cpu.push_back((ThreadCpuSeconds() - cpu) / repeats[i]);
            timings[i].wall.push_back((WallSeconds() - wall) / repeats[i]);
        }
    }
    return timings;
}

Spread Scaled(const std::vector<double>& values, double factor) {
    std::vector<double> scaled = values;
    for (double& v : scaled) v *= factor;
    return SpreadOf(scaled);
}

Spread Ratio(const std::vector<double>& dividend, const std::vector<double>& divisor) {
    std::vector<double> ratios;
    for (std::size_t i = 0; i < dividend.size(); ++i) ratios.push_back(dividend[i] / divisor[i]);
    return SpreadOf(ratios);
}

}  // namespace zam::bench
