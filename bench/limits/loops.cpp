// Compiled once for each target, as its rows are. What it includes is inlined or belongs to the target's own lanes.
#include "bench/limits/loops.h"

#include "effect/render/kernels/elementary.h"

#if defined(ZAM_LOOPS_AVX512)
#include "effect/render/kernels/lanes_avx512.h"
#elif defined(ZAM_LOOPS_AVX2)
#include "effect/render/kernels/lanes_avx2.h"
#elif defined(ZAM_LOOPS_NEON)
#include "effect/render/kernels/lanes_neon.h"
#endif

namespace zam::bench {
namespace {

#if defined(ZAM_LOOPS_AVX512)
using V = F64x8;
constexpr char kTarget[] = "avx512";
constexpr bool kSeries = true;
#elif defined(ZAM_LOOPS_AVX2)
using V = F64x4;
constexpr char kTarget[] = "avx2";
constexpr bool kSeries = false;
#elif defined(ZAM_LOOPS_NEON)
using V = F64x2;
constexpr char kTarget[] = "neon";
constexpr bool kSeries = false;
#else
using V = double;
constexpr char kTarget[] = "scalar";
constexpr bool kSeries = false;
#endif

// The value is in a register, and what it is nobody knows.
[[gnu::always_inline]] inline void Hide(V* value) {
#if defined(ZAM_LOOPS_AVX512) || defined(ZAM_LOOPS_AVX2)
    asm volatile("" : "+v"(value->v));
#elif defined(ZAM_LOOPS_NEON)
    asm volatile("" : "+w"(value->v));
#elif defined(__x86_64__)
    asm volatile("" : "+x"(*value));
#else
    asm volatile("" : "+w"(*value));
#endif
}

template <class Operation>
[[gnu::always_inline]] inline void Turns(int turns, Operation operation) {
    const V one(0.57);
    for (int turn = 0; turn < turns; ++turn) {
#pragma GCC unroll 8
        for (int i = 0; i < kOperations; ++i) {
            V value = one;
            Hide(&value);
            V result = operation(value);
            Hide(&result);
        }
    }
}

constexpr double kOther = 1.7;

constexpr LimitLoops kLoops{
    kTarget,
    LanesOf<V>::kCount,
    kSeries,
    {
        [](int turns) { Turns(turns, [](V v) { return Root(v); }); },
        [](int turns) { Turns(turns, [](V v) { return ReciprocalRoot(v); }); },
        [](int turns) { Turns(turns, [c = V(kOther)](V v) { return Quotient(c, v); }); },
        [](int turns) { Turns(turns, [](V v) { return Reciprocal(v); }); },
        [](int turns) { Turns(turns, [c = V(kOther)](V v) { return MulAdd(v, c, c); }); },
        [](int turns) { Turns(turns, [c = V(kOther)](V v) { return v + c; }); },
        [](int turns) { Turns(turns, [c = V(kOther)](V v) { return AngleAbove(v, c); }); },
        [](int turns) { Turns(turns, [c = V(kOther)](V v) { return LogOfQuotient(v, c); }); },
        [](int turns) { Turns(turns, [](V v) { return Power(v, 0.45); }); },
    }};

}  // namespace

#if defined(ZAM_LOOPS_AVX512)
LimitLoops Loops_avx512() { return kLoops; }
#elif defined(ZAM_LOOPS_AVX2)
LimitLoops Loops_avx2() { return kLoops; }
#elif defined(ZAM_LOOPS_NEON)
LimitLoops Loops_neon() { return kLoops; }
#else
LimitLoops Loops_scalar() { return kLoops; }
#endif

}  // namespace zam::bench
