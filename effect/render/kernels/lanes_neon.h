#pragma once
// Two lanes of NEON, which every arm64 processor has; see lanes.h for what the names mean.
#include <arm_neon.h>

#include "effect/render/kernels/lanes.h"

namespace zam {

struct F64x2 {
    float64x2_t v;
    F64x2() = default;
    F64x2(float64x2_t lanes) : v(lanes) {}      // NOLINT: is what it holds
    F64x2(double all) : v(vdupq_n_f64(all)) {}  // NOLINT: a number is a vector of it
};
struct Mask2 {
    uint64x2_t m;  // all bits of a lane, or none
    [[gnu::always_inline]] friend Mask2 operator&(Mask2 a, Mask2 b) { return {vandq_u64(a.m, b.m)}; }
    [[gnu::always_inline]] friend Mask2 operator|(Mask2 a, Mask2 b) { return {vorrq_u64(a.m, b.m)}; }
    [[gnu::always_inline]] friend Mask2 operator!(Mask2 a) {
        return {veorq_u64(a.m, vdupq_n_u64(~std::uint64_t{0}))};
    }
};

[[gnu::always_inline]] inline F64x2 operator+(F64x2 a, F64x2 b) { return vaddq_f64(a.v, b.v); }
[[gnu::always_inline]] inline F64x2 operator-(F64x2 a, F64x2 b) { return vsubq_f64(a.v, b.v); }
[[gnu::always_inline]] inline F64x2 operator*(F64x2 a, F64x2 b) { return vmulq_f64(a.v, b.v); }
[[gnu::always_inline]] inline F64x2 operator/(F64x2 a, F64x2 b) { return vdivq_f64(a.v, b.v); }
[[gnu::always_inline]] inline F64x2 operator-(F64x2 a) { return vnegq_f64(a.v); }
[[gnu::always_inline]] inline Mask2 operator<(F64x2 a, F64x2 b) { return {vcltq_f64(a.v, b.v)}; }
[[gnu::always_inline]] inline Mask2 operator>(F64x2 a, F64x2 b) { return {vcgtq_f64(a.v, b.v)}; }
[[gnu::always_inline]] inline Mask2 operator<=(F64x2 a, F64x2 b) { return {vcleq_f64(a.v, b.v)}; }
[[gnu::always_inline]] inline Mask2 operator>=(F64x2 a, F64x2 b) { return {vcgeq_f64(a.v, b.v)}; }
[[gnu::always_inline]] inline Mask2 operator==(F64x2 a, F64x2 b) { return {vceqq_f64(a.v, b.v)}; }
[[gnu::always_inline]] inline Mask2 operator!=(F64x2 a, F64x2 b) { return !(a == b); }

template <>
struct LanesOf<F64x2> {
    static constexpr int kCount = 2;
    static F64x2 Load(const double* from) { return vld1q_f64(from); }
    static F64x2 Index() { return vcombine_f64(vdup_n_f64(0.0), vdup_n_f64(1.0)); }
};
[[gnu::always_inline]] inline void Store(double* to, F64x2 v) { vst1q_f64(to, v.v); }

[[gnu::always_inline]] inline F64x2 select(Mask2 mask, F64x2 when_true, F64x2 when_false) {
    return vbslq_f64(mask.m, when_true.v, when_false.v);
}
[[gnu::always_inline]] inline bool any(Mask2 mask) { return vmaxvq_u32(vreinterpretq_u32_u64(mask.m)) != 0; }

// larger, smaller and at_least_zero are those of lanes.h: the processor's own maximum and minimum treat a not-a-number
// otherwise.

[[gnu::always_inline]] inline F64x2 Abs(F64x2 v) { return vabsq_f64(v.v); }
[[gnu::always_inline]] inline F64x2 Floor(F64x2 v) { return vrndmq_f64(v.v); }
[[gnu::always_inline]] inline F64x2 MulAdd(F64x2 a, F64x2 b, F64x2 c) { return vfmaq_f64(c.v, a.v, b.v); }
[[gnu::always_inline]] inline F64x2 NegMulAdd(F64x2 a, F64x2 b, F64x2 c) { return vfmsq_f64(c.v, a.v, b.v); }

// No estimates with a series here: the processor's have 8 bits, and would need three steps.
[[gnu::always_inline]] inline F64x2 Quotient(F64x2 n, F64x2 d) { return n / d; }
[[gnu::always_inline]] inline F64x2 Reciprocal(F64x2 v) { return F64x2(1.0) / v; }
[[gnu::always_inline]] inline F64x2 Root(F64x2 v) { return vsqrtq_f64(v.v); }
[[gnu::always_inline]] inline F64x2 ReciprocalRoot(F64x2 v) { return Reciprocal(Root(v)); }

[[gnu::always_inline]] inline void SplitExponent(F64x2 v, F64x2* m, F64x2* e) {
    const uint64x2_t bits = vreinterpretq_u64_f64(v.v);
    *e = F64x2(vcvtq_f64_u64(vshrq_n_u64(bits, 52))) - F64x2(1023.0);  // v is positive
    const uint64x2_t one = vreinterpretq_u64_f64(vdupq_n_f64(1.0));
    *m = vreinterpretq_f64_u64(vbslq_u64(vdupq_n_u64(0x000FFFFFFFFFFFFF), bits, one));
}
[[gnu::always_inline]] inline F64x2 ScaleByPowerOfTwo(F64x2 v, F64x2 e) {
    const int64x2_t biased = vcvtq_s64_f64((e + F64x2(1023.0)).v);
    return v * F64x2(vreinterpretq_f64_s64(vshlq_n_s64(biased, 52)));
}

[[gnu::always_inline]] inline void StorePacked(std::uint64_t* to, F64x2 first, F64x2 second, F64x2 third,
                                               F64x2 fourth, int bits) {
    const auto word = [bits](F64x2 v, int place) {
        return vshlq_u64(vcvtq_u64_f64(v.v), vdupq_n_s64(place * bits));
    };
    const uint64x2_t low = vorrq_u64(word(first, 0), word(second, 1));
    const uint64x2_t high = vorrq_u64(word(third, 2), word(fourth, 3));
    vst1q_u64(to, vorrq_u64(low, high));
}

}  // namespace zam
