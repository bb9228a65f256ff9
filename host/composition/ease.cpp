#include "host/composition/ease.h"

namespace zam::host {
namespace {

// One coordinate of a cubic Bezier curve.
double bezier(double u, double p0, double p1, double p2, double p3) {
    const double v = 1.0 - u;
    return v * v * v * p0 + 3.0 * v * v * u * p1 + 3.0 * v * u * u * p2 + u * u * u * p3;
}

// The curve's parameter at a fraction of the span. Influences of 0 to 1 keep time from running backwards, so
// that halving finds it; handles may cross, and Newton's steps would then stall where time stands still.
double parameter_at(double part, double out_influence, double in_influence) {
    double low = 0.0, high = 1.0;
    for (int step = 0; step < 60; ++step) {
        const double middle = 0.5 * (low + high);
        (bezier(middle, 0.0, out_influence, 1.0 - in_influence, 1.0) < part ? low : high) = middle;
    }
    return high;
}

}  // namespace

double way_travelled(double part, double span, double way, const std::optional<Ease>& out,
                     const std::optional<Ease>& in) {
    const Ease straight{way / span, 1.0 / 6.0};
    const Ease from = out.value_or(straight), to = in.value_or(straight);
    const double u = parameter_at(part, from.influence, to.influence);
    return bezier(u, 0.0, from.influence * span * from.speed, way - to.influence * span * to.speed, way);
}

}  // namespace zam::host
