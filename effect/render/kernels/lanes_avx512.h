#pragma once
// Eight lanes of AVX-512 (F, DQ, VL). Only for files that are compiled for it; see lanes.h for what the names mean.
#include <immintrin.h>

#include "effect/render/kernels/lanes.h"

namespace zam {

struct F64x8 {
    __m512d v;
    F64x8() = default;
    F64x8(__m512d lanes) : v(lanes) {}             // NOLINT: is what it holds
    F64x8(double all) : v(_mm512_set1_pd(all)) {}  // NOLINT: a number is a vector of it
};
struct Mask8 {
    __mmask8 m;
    [[gnu::always_inline]] friend Mask8 operator&(Mask8 a, Mask8 b) { return {_kand_mask8(a.m, b.m)}; }
    [[gnu::always_inline]] friend Mask8 operator|(Mask8 a, Mask8 b) { return {_kor_mask8(a.m, b.m)}; }
    [[gnu::always_inline]] friend Mask8 operator!(Mask8 a) { return {_knot_mask8(a.m)}; }
};

[[gnu::always_inline]] inline F64x8 operator+(F64x8 a, F64x8 b) { return _mm512_add_pd(a.v, b.v); }
[[gnu::always_inline]] inline F64x8 operator-(F64x8 a, F64x8 b) { return _mm512_sub_pd(a.v, b.v); }
[[gnu::always_inline]] inline F64x8 operator*(F64x8 a, F64x8 b) { return _mm512_mul_pd(a.v, b.v); }
[[gnu::always_inline]] inline F64x8 operator/(F64x8 a, F64x8 b) { return _mm512_div_pd(a.v, b.v); }
[[gnu::always_inline]] inline F64x8 operator-(F64x8 a) { return _mm512_xor_pd(a.v, _mm512_set1_pd(-0.0)); }
[[gnu::always_inline]] inline Mask8 operator<(F64x8 a, F64x8 b) {
    return {_mm512_cmp_pd_mask(a.v, b.v, _CMP_LT_OQ)};
}
[[gnu::always_inline]] inline Mask8 operator>(F64x8 a, F64x8 b) {
    return {_mm512_cmp_pd_mask(a.v, b.v, _CMP_GT_OQ)};
}
[[gnu::always_inline]] inline Mask8 operator<=(F64x8 a, F64x8 b) {
    return {_mm512_cmp_pd_mask(a.v, b.v, _CMP_LE_OQ)};
}
[[gnu::always_inline]] inline Mask8 operator>=(F64x8 a, F64x8 b) {
    return {_mm512_cmp_pd_mask(a.v, b.v, _CMP_GE_OQ)};
}
[[gnu::always_inline]] inline Mask8 operator==(F64x8 a, F64x8 b) {
    return {_mm512_cmp_pd_mask(a.v, b.v, _CMP_EQ_OQ)};
}
[[gnu::always_inline]] inline Mask8 operator!=(F64x8 a, F64x8 b) {
    return {_mm512_cmp_pd_mask(a.v, b.v, _CMP_NEQ_UQ)};
}

template <>
struct LanesOf<F64x8> {
    static constexpr int kCount = 8;
    static F64x8 Load(const double* from) { return _mm512_loadu_pd(from); }
    static F64x8 Index() { return _mm512_setr_pd(0, 1, 2, 3, 4, 5, 6, 7); }
};
[[gnu::always_inline]] inline void Store(double* to, F64x8 v) { _mm512_storeu_pd(to, v.v); }

[[gnu::always_inline]] inline F64x8 select(Mask8 mask, F64x8 when_true, F64x8 when_false) {
    return _mm512_mask_blend_pd(mask.m, when_false.v, when_true.v);
}
[[gnu::always_inline]] inline bool any(Mask8 mask) { return mask.m != 0; }

// Of a number and a not-a-number, `a`: the processor's rule for its second operand.
[[gnu::always_inline]] inline F64x8 larger(F64x8 a, F64x8 b) { return _mm512_max_pd(b.v, a.v); }
[[gnu::always_inline]] inline F64x8 smaller(F64x8 a, F64x8 b) { return _mm512_min_pd(b.v, a.v); }
[[gnu::always_inline]] inline F64x8 at_least_zero(F64x8 v) { return larger(F64x8(0.0), v); }

[[gnu::always_inline]] inline F64x8 Abs(F64x8 v) { return _mm512_abs_pd(v.v); }
[[gnu::always_inline]] inline F64x8 Floor(F64x8 v) {
    return _mm512_roundscale_pd(v.v, _MM_FROUND_TO_NEG_INF | _MM_FROUND_NO_EXC);
}
[[gnu::always_inline]] inline F64x8 MulAdd(F64x8 a, F64x8 b, F64x8 c) {
    return _mm512_fmadd_pd(a.v, b.v, c.v);
}
[[gnu::always_inline]] inline F64x8 NegMulAdd(F64x8 a, F64x8 b, F64x8 c) {
    return _mm512_fnmadd_pd(a.v, b.v, c.v);
}

// Division and square root occupy the divider for 16 cycles and more; an estimate of 14 bits and the first terms of the
// series around it, which leave less than 2^-54, do not.
// With y near 1 / d and e = 1 - d y:  n / d = n y (1 + e + e^2 + e^3 + ...) = n y (1 + e) (1 + e^2) ...
[[gnu::always_inline]] inline F64x8 Quotient(F64x8 n, F64x8 d) {
    const F64x8 y = _mm512_rcp14_pd(d.v);
    const F64x8 e = NegMulAdd(d, y, 1.0);
    const F64x8 q = n * y;
    const F64x8 nearer = MulAdd(q, e, q);
    return MulAdd(nearer, e * e, nearer);
}
[[gnu::always_inline]] inline F64x8 Reciprocal(F64x8 v) {
    const F64x8 y = _mm512_rcp14_pd(v.v);
    const F64x8 e = NegMulAdd(v, y, 1.0);
    const F64x8 nearer = MulAdd(y, e, y);
    return MulAdd(nearer, e * e, nearer);
}
// With y near 1 / sqrt(v) and e = 1 - v y^2:  1 / sqrt(v) = y (1 + e / 2 + 3 e^2 / 8 + 5 e^3 / 16 + ...)
[[gnu::always_inline]] inline F64x8 ReciprocalRoot(F64x8 v) {
    const F64x8 y = _mm512_rsqrt14_pd(v.v);
    const F64x8 e = NegMulAdd(v * y, y, 1.0);
    return MulAdd(y * e, MulAdd(MulAdd(e, 0.3125, 0.375), e, 0.5), y);
}
[[gnu::always_inline]] inline F64x8 Root(F64x8 v) { return v * ReciprocalRoot(v); }

[[gnu::always_inline]] inline void SplitExponent(F64x8 v, F64x8* m, F64x8* e) {
    *m = _mm512_getmant_pd(v.v, _MM_MANT_NORM_1_2, _MM_MANT_SIGN_src);
    *e = _mm512_getexp_pd(v.v);
}
[[gnu::always_inline]] inline F64x8 ScaleByPowerOfTwo(F64x8 v, F64x8 e) { return _mm512_scalef_pd(v.v, e.v); }

[[gnu::always_inline]] inline void StorePacked(std::uint64_t* to, F64x8 first, F64x8 second, F64x8 third,
                                               F64x8 fourth, int bits) {
    const auto word = [bits](F64x8 v, int place) {
        return _mm512_sll_epi64(_mm512_cvttpd_epu64(v.v), _mm_cvtsi32_si128(place * bits));
    };
    const __m512i low = _mm512_or_si512(word(first, 0), word(second, 1));
    const __m512i high = _mm512_or_si512(word(third, 2), word(fourth, 3));
    _mm512_storeu_si512(to, _mm512_or_si512(low, high));
}

}  // namespace zam
