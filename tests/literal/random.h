#pragma once
// Seeded random numbers for scenes.
#include <cmath>
#include <random>

#include "effect/render/kernels/records.h"

namespace zam::test {

class Random {
  public:
    explicit Random(unsigned seed) : engine_(seed) {}
    double between(double low, double high) {
        return std::uniform_real_distribution<double>(low, high)(engine_);
    }
    // Evenly over the orders of magnitude.
    double over_decades(double low, double high) { return std::exp(between(std::log(low), std::log(high))); }
    Vec3 direction() {
        for (;;) {
            const Vec3 v{between(-1, 1), between(-1, 1), between(-1, 1)};
            const double length_sq = dot(v, v);
            if (length_sq > 0.01 && length_sq <= 1.0)
                return {v.x / std::sqrt(length_sq), v.y / std::sqrt(length_sq), v.z / std::sqrt(length_sq)};
        }
    }

  private:
    std::mt19937_64 engine_;
};

}  // namespace zam::test
