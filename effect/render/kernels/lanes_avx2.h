#pragma once
// Four lanes of AVX2 with FMA. Only for files that are compiled for it; see lanes.h for what the names mean.
#include <immintrin.h>

#include "effect/render/kernels/lanes.h"

namespace zam {

struct F64x4 {
    __m256d v;
    F64x4() = default;
    F64x4(__m256d lanes) : v(lanes) {}             // NOLINT: is what it holds
    F64x4(double all) : v(_mm256_set1_pd(all)) {}  // NOLINT: a number is a vector of it
};
struct Mask4 {
    __m256d m;  // all bits of a lane, or none
    [[gnu::always_inline]] friend Mask4 operator&(Mask4 a, Mask4 b) { return {_mm256_and_pd(a.m, b.m)}; }
    [[gnu::always_inline]] friend Mask4 operator|(Mask4 a, Mask4 b) { return {_mm256_or_pd(a.m, b.m)}; }
    [[gnu::always_inline]] friend Mask4 operator!(Mask4 a) {
        return {_mm256_xor_pd(a.m, _mm256_castsi256_pd(_mm256_set1_epi64x(-1)))};
    }
};

[[gnu::always_inline]] inline F64x4 operator+(F64x4 a, F64x4 b) { return _mm256_add_pd(a.v, b.v); }
[[gnu::always_inline]] inline F64x4 operator-(F64x4 a, F64x4 b) { return _mm256_sub_pd(a.v, b.v); }
[[gnu::always_inline]] inline F64x4 operator*(F64x4 a, F64x4 b) { return _mm256_mul_pd(a.v, b.v); }
[[gnu::always_inline]] inline F64x4 operator/(F64x4 a, F64x4 b) { return _mm256_div_pd(a.v, b.v); }
[[gnu::always_inline]] inline F64x4 operator-(F64x4 a) { return _mm256_xor_pd(a.v, _mm256_set1_pd(-0.0)); }
[[gnu::always_inline]] inline Mask4 operator<(F64x4 a, F64x4 b) {
    return {_mm256_cmp_pd(a.v, b.v, _CMP_LT_OQ)};
}
[[gnu::always_inline]] inline Mask4 operator>(F64x4 a, F64x4 b) {
    return {_mm256_cmp_pd(a.v, b.v, _CMP_GT_OQ)};
}
[[gnu::always_inline]] inline Mask4 operator<=(F64x4 a, F64x4 b) {
    return {_mm256_cmp_pd(a.v, b.v, _CMP_LE_OQ)};
}
[[gnu::always_inline]] inline Mask4 operator>=(F64x4 a, F64x4 b) {
    return {_mm256_cmp_pd(a.v, b.v, _CMP_GE_OQ)};
}
[[gnu::always_inline]] inline Mask4 operator==(F64x4 a, F64x4 b) {
    return {_mm256_cmp_pd(a.v, b.v, _CMP_EQ_OQ)};
}
[[gnu::always_inline]] inline Mask4 operator!=(F64x4 a, F64x4 b) {
    return {_mm256_cmp_pd(a.v, b.v, _CMP_NEQ_UQ)};
}

template <>
struct LanesOf<F64x4> {
    static constexpr int kCount = 4;
    static F64x4 Load(const double* from) { return _mm256_loadu_pd(from); }
    static F64x4 Index() { return _mm256_setr_pd(0, 1, 2, 3); }
};
[[gnu::always_inline]] inline void Store(double* to, F64x4 v) { _mm256_storeu_pd(to, v.v); }

[[gnu::always_inline]] inline F64x4 select(Mask4 mask, F64x4 when_true, F64x4 when_false) {
    return _mm256_blendv_pd(when_false.v, when_true.v, mask.m);
}
[[gnu::always_inline]] inline bool any(Mask4 mask) { return _mm256_movemask_pd(mask.m) != 0; }

// Of a number and a not-a-number, `a`: the processor's rule for its second operand.
[[gnu::always_inline]] inline F64x4 larger(F64x4 a, F64x4 b) { return _mm256_max_pd(b.v, a.v); }
[[gnu::always_inline]] inline F64x4 smaller(F64x4 a, F64x4 b) { return _mm256_min_pd(b.v, a.v); }
[[gnu::always_inline]] inline F64x4 at_least_zero(F64x4 v) { return larger(F64x4(0.0), v); }

[[gnu::always_inline]] inline F64x4 Abs(F64x4 v) { return _mm256_andnot_pd(_mm256_set1_pd(-0.0), v.v); }
[[gnu::always_inline]] inline F64x4 Floor(F64x4 v) { return _mm256_floor_pd(v.v); }
[[gnu::always_inline]] inline F64x4 MulAdd(F64x4 a, F64x4 b, F64x4 c) {
    return _mm256_fmadd_pd(a.v, b.v, c.v);
}
[[gnu::always_inline]] inline F64x4 NegMulAdd(F64x4 a, F64x4 b, F64x4 c) {
    return _mm256_fnmadd_pd(a.v, b.v, c.v);
}

[[gnu::always_inline]] inline F64x4 Quotient(F64x4 n, F64x4 d) { return n / d; }
[[gnu::always_inline]] inline F64x4 Reciprocal(F64x4 v) { return F64x4(1.0) / v; }
[[gnu::always_inline]] inline F64x4 Root(F64x4 v) { return _mm256_sqrt_pd(v.v); }
[[gnu::always_inline]] inline F64x4 ReciprocalRoot(F64x4 v) { return Reciprocal(Root(v)); }

// Whole numbers up to 2^51 as doubles and as 64-bit integers: the same bits below this number's exponent.
inline constexpr double kWholeNumbers = 6755399441055744.0;  // 1.5 * 2^52

[[gnu::always_inline]] inline void SplitExponent(F64x4 v, F64x4* m, F64x4* e) {
    const __m256i bits = _mm256_castpd_si256(v.v);
    const __m256i exponent = _mm256_srli_epi64(bits, 52);  // biased; v is positive
    const __m256i whole = _mm256_castpd_si256(_mm256_set1_pd(kWholeNumbers));
    *e = F64x4(_mm256_castsi256_pd(_mm256_add_epi64(exponent, whole))) - (kWholeNumbers + 1023.0);
    const __m256i fraction = _mm256_and_si256(bits, _mm256_set1_epi64x(0x000FFFFFFFFFFFFF));
    *m = _mm256_castsi256_pd(_mm256_or_si256(fraction, _mm256_set1_epi64x(0x3FF0000000000000)));
}
[[gnu::always_inline]] inline F64x4 ScaleByPowerOfTwo(F64x4 v, F64x4 e) {
    const __m256i whole = _mm256_castpd_si256(_mm256_set1_pd(kWholeNumbers));
    const __m256i biased = _mm256_sub_epi64(_mm256_castpd_si256((e + (kWholeNumbers + 1023.0)).v), whole);
    return v * F64x4(_mm256_castsi256_pd(_mm256_slli_epi64(biased, 52)));
}

[[gnu::always_inline]] inline void StorePacked(std::uint64_t* to, F64x4 first, F64x4 second, F64x4 third,
                                               F64x4 fourth, int bits) {
    const __m256i whole = _mm256_castpd_si256(_mm256_set1_pd(kWholeNumbers));
    const auto word = [&](F64x4 v, int place) {
        const __m256i number = _mm256_xor_si256(_mm256_castpd_si256((Floor(v) + kWholeNumbers).v), whole);
        return _mm256_sll_epi64(number, _mm_cvtsi32_si128(place * bits));
    };
    const __m256i low = _mm256_or_si256(word(first, 0), word(second, 1));
    const __m256i high = _mm256_or_si256(word(third, 2), word(fourth, 3));
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(to), _mm256_or_si256(low, high));
}

}  // namespace zam
