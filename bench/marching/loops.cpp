#include "bench/marching/loops.h"

#include <algorithm>
#include <cmath>

// Steps are added side by side, as many as the machine's vectors hold.
#if defined(ZAM_BENCH_X86)
#define ZAM_WIDEST __attribute__((target_clones("arch=x86-64-v4", "arch=x86-64-v3", "default"), flatten))
#else
#define ZAM_WIDEST
#endif

namespace zam::bench {
namespace {

template <class T>
inline T PointSteps(const MarchedPoint& light, T dx, T dy, T from, T to, int steps) {
    const T px = static_cast<T>(light.x), py = static_cast<T>(light.y), pz = static_cast<T>(light.z);
    const T soft = static_cast<T>(light.soft_k_sq), dt = (to - from) / static_cast<T>(steps);
    T sum = 0;
    for (int i = 0; i < steps; ++i) {
        const T t = from + (static_cast<T>(i) + T(0.5)) * dt;
        const T x = t * dx - px, y = t * dy - py, z = t - pz;
        sum += 1 / (x * x + y * y + z * z + soft);
    }
    return sum * dt * static_cast<T>(light.strength);
}

template <class T>
inline T SpotSteps(const MarchedSpot& light, T dx, T dy, T from, T to, int steps) {
    const T px = static_cast<T>(light.x), py = static_cast<T>(light.y), pz = static_cast<T>(light.z);
    const T ax = static_cast<T>(light.axis_x), ay = static_cast<T>(light.axis_y),
            az = static_cast<T>(light.axis_z);
    const T outer = static_cast<T>(light.cos_outer),
            per_cos = static_cast<T>(1.0 / (light.cos_inner - light.cos_outer));
    const T start = static_cast<T>(light.start), reach = static_cast<T>(light.reach);
    const T dt = (to - from) / static_cast<T>(steps);
    T sum = 0;
    for (int i = 0; i < steps; ++i) {
        const T t = from + (static_cast<T>(i) + T(0.5)) * dt;
        const T x = t * dx - px, y = t * dy - py, z = t - pz;
        const T along = x * ax + y * ay + z * az;
        const T inverse_q = 1 / (x * x + y * y + z * z + 1);
        const T cosine = along * std::sqrt(inverse_q);
        const T weight = std::min(std::max((cosine - outer) * per_cos, T(0)), T(1));
        sum += along >= start && along <= reach ? weight * inverse_q : T(0);
    }
    return sum * dt * static_cast<T>(light.strength);
}

}  // namespace

ZAM_WIDEST double MarchPoint(const MarchedPoint& light, double dx, double dy, double from, double to,
                             int steps) {
    return PointSteps<double>(light, dx, dy, from, to, steps);
}
ZAM_WIDEST float MarchPoint(const MarchedPoint& light, float dx, float dy, float from, float to, int steps) {
    return PointSteps<float>(light, dx, dy, from, to, steps);
}
ZAM_WIDEST double MarchSpot(const MarchedSpot& light, double dx, double dy, double from, double to,
                            int steps) {
    return SpotSteps<double>(light, dx, dy, from, to, steps);
}
ZAM_WIDEST float MarchSpot(const MarchedSpot& light, float dx, float dy, float from, float to, int steps) {
    return SpotSteps<float>(light, dx, dy, from, to, steps);
}

}  // namespace zam::bench
