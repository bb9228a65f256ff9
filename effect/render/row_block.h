#pragma once
// A block of a row: its view rays, and the light that has been gathered along them. What a block needs fits the stack
// and the first cache.
#include "effect/render/kernels/lanes.h"
#include "effect/render/kernels/look.h"
#include "effect/render/render_data.h"
#include "effect/render/spans.h"

namespace zam {

// A light's strength and colour, squared where the look wants it.
struct Tint {
    double red, green, blue, alpha;
};

// Pixels of a block, in whole groups of lanes from its first.
struct Groups {
    int first, end;
};

template <class V>
struct RowBlock {
    static constexpr int kSize = 256;  // pixels
    static constexpr int kLanes = LanesOf<V>::kCount;
    static_assert(kSize % kLanes == 0);

    const _RenderData& frame;
    A_long y;
    double dy;  // of the whole row
    bool squared;
    int first = 0, count = 0;  // the block's first pixel in the row, and its number of pixels
    // Rays (dx, dy, 1), a = |ray|^2.
    alignas(64) double dx[kSize];
    alignas(64) double a[kSize];
    alignas(64) double inv_root_a[kSize];
    // Sums of light.
    alignas(64) double red[kSize];
    alignas(64) double green[kSize];
    alignas(64) double blue[kSize];
    alignas(64) double alpha[kSize];

    RowBlock(const _RenderData& frame_data, A_long row)
        : frame(frame_data),
          y(row),
          dy(RayY(frame_data.rays(), static_cast<double>(row))),
          squared(SquaresLights(frame_data.look)) {}

    void Start(int first_pixel) {
        first = first_pixel;
        count = frame.width - first < kSize ? frame.width - first : kSize;
        const V step = LanesOf<V>::Index(), zero(0.0);
        const PixelRays rays = frame.rays();
        for (int i = 0; i < count; i += kLanes) {
            const V x = step + V(static_cast<double>(first + i));
            const V ray_x = RayX(rays, x);
            const V square = ray_x * ray_x + dy * dy + 1.0;
            Store(dx + i, ray_x);
            Store(a + i, square);
            Store(inv_root_a + i, ReciprocalRoot(square));
            Store(red + i, zero);
            Store(green + i, zero);
            Store(blue + i, zero);
            Store(alpha + i, zero);
        }
    }

    // The block's share of a row's columns.
    [[nodiscard]] Groups GroupsOf(const Columns& columns) const {
        const int from = columns.first > first ? columns.first - first : 0;
        const int end = columns.end - first < count ? columns.end - first : count;
        return {from / kLanes * kLanes, end};
    }

    [[nodiscard]] Tint MakeTint(const Vec3& color, double intensity) const {
        const Tint t{color.x * intensity, color.y * intensity, color.z * intensity, intensity};
        return squared ? Tint{t.red * t.red, t.green * t.green, t.blue * t.blue, t.alpha * t.alpha} : t;
    }
};

template <class V>
[[gnu::always_inline]] inline V Load(const double* from) {
    return LanesOf<V>::Load(from);
}

}  // namespace zam
