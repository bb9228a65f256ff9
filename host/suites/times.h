#pragma once
// Composition frames as the interface's times and back.
#include "host/composition/composition.h"
#include "hostapi/types.h"

namespace zam::host {

// Exact for whole frames: frame * rate.den over rate.num. Fractions of a frame get the finest scale that
// fits.
[[nodiscard]] A_Time time_of_frame(const Ratio& rate, double frame);
[[nodiscard]] double frame_of_time(const Ratio& rate, const A_Time& time);  // scale must not be 0

}  // namespace zam::host
