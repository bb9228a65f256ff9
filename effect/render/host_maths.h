#pragma once
// The maths of a frame's set-up, which comes from the host's callbacks.
#include "hostapi/effect.h"

namespace zam {

struct HostMaths {
    const PF_ANSICallbacks* ansi;
    explicit HostMaths(const PF_InData* in_data) : ansi(&in_data->utils->ansi) {}

    [[nodiscard]] double sqrt(double v) const { return ansi->sqrt(v); }
    [[nodiscard]] double cos(double v) const { return ansi->cos(v); }
    [[nodiscard]] double tan(double v) const { return ansi->tan(v); }
    [[nodiscard]] double pow(double v, double exponent) const { return ansi->pow(v, exponent); }
};

}  // namespace zam
