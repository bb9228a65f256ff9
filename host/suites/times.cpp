#include "host/suites/times.h"

#include <algorithm>
#include <cmath>

namespace zam::host {

A_Time time_of_frame(const Ratio& rate, double frame) {
    const double value = frame * rate.den, scale = rate.num;
    double finer = 1.0;
    for (double next = 1.0; next <= 1e6; next *= 10.0) {
        // Within 31 bits: effects may keep a scale in a signed number.
        if (next > 1.0 && (scale * next > INT32_MAX || std::abs(value) * next > INT32_MAX)) break;
        finer = next;
        if (std::abs(value * finer - std::round(value * finer)) < 1e-9) break;
    }
    const double whole = std::clamp(value * finer, -2147483648.0, 2147483647.0);
    return {static_cast<A_long>(std::llround(whole)), static_cast<A_u_long>(scale * finer)};
}

double frame_of_time(const Ratio& rate, const A_Time& time) {
    // Both products are exact, so that whole frames come back whole.
    return static_cast<double>(time.value) * rate.num / (static_cast<double>(time.scale) * rate.den);
}

}  // namespace zam::host
