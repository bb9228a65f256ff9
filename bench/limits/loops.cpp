// Compiled once for each vector width; includes nothing whose inline functions another file might share.
#include "bench/limits/loops.h"

#if defined(__AVX512F__) || defined(__AVX2__)
#include <immintrin.h>
#endif

namespace zam::bench {
namespace {

#if defined(__AVX512F__)
using V = __m512d;
constexpr int kLanes = 8;
V Fill(double v) { return _mm512_set1_pd(v); }
V Root(V v) { return _mm512_sqrt_pd(v); }
V MulAdd(V a, V b, V c) { return _mm512_fmadd_pd(a, b, c); }
double First(V v) { return v[0]; }
#elif defined(__AVX2__)
using V = __m256d;
constexpr int kLanes = 4;
V Fill(double v) { return _mm256_set1_pd(v); }
V Root(V v) { return _mm256_sqrt_pd(v); }
V MulAdd(V a, V b, V c) { return _mm256_fmadd_pd(a, b, c); }
double First(V v) { return v[0]; }
#else
using V = double;
constexpr int kLanes = 1;
V Fill(double v) { return v; }
V Root(V v) { return __builtin_sqrt(v); }
V MulAdd(V a, V b, V c) { return a * b + c; }
double First(V v) { return v; }
#endif

// Values stay normal and do not settle on ones that a divider might shortcut.
template <class Operation>
double Turns(int turns, Operation operation) {
    V v[kOperations];
    for (int i = 0; i < kOperations; ++i) v[i] = Fill(1.1 + 0.01 * i);
    for (int turn = 0; turn < turns; ++turn) {
#pragma GCC unroll 12
        for (int i = 0; i < kOperations; ++i) v[i] = operation(v[i]);
    }
    double sum = 0.0;
    for (int i = 0; i < kOperations; ++i) sum += First(v[i]);
    return sum;
}

double SquareRoots(int turns) {
    const V c = Fill(0.7);
    return Turns(turns, [c](V v) { return Root(v + c); });
}
double Divisions(int turns) {
    const V c = Fill(1.7), d = Fill(0.3);
    return Turns(turns, [c, d](V v) { return c / (v + d); });
}
double MultiplyAdds(int turns) {
    const V c = Fill(0.999), d = Fill(0.0013);
    return Turns(turns, [c, d](V v) { return MulAdd(v, c, d); });
}

constexpr LimitLoops kLoops{kLanes, SquareRoots, Divisions, MultiplyAdds};

}  // namespace

#if defined(__AVX512F__)
LimitLoops Avx512Loops() { return kLoops; }
#elif defined(__AVX2__)
LimitLoops Avx2Loops() { return kLoops; }
#else
LimitLoops ScalarLoops() { return kLoops; }
#endif

}  // namespace zam::bench
