#pragma once
// Temporal ease: how a value sets off from one key and comes in at the next.
//
// Between two keys the way travelled is a cubic Bezier curve over time. Each key has a handle that reaches
// into the span by its influence, and lies as steeply as its speed says:
//
//     (0, 0)   (out.influence * span, out.influence * span * out.speed)
//              (span - in.influence * span, way - in.influence * span * in.speed)   (span, way)
#include <optional>

namespace zam::host {

struct Ease {
    double speed = 0.0;      // of the value, units per frame
    double influence = 0.0;  // fraction of the span, 0 to 1
};

// The way travelled after the fraction `part` (0 to 1) of a span of `span` frames, at whose end it is `way`.
// A side without an ease has its handle on the straight line between the keys. Overshoots where a handle
// does.
[[nodiscard]] double way_travelled(double part, double span, double way, const std::optional<Ease>& out,
                                   const std::optional<Ease>& in);

}  // namespace zam::host
