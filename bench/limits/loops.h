#pragma once
// Loops of one kind of operation, on the lanes of each target that the effect may be built with.

namespace zam::bench {

// What formulas ask their lanes for, and the functions that are made of it.
enum Kind {
    kRoot,
    kReciprocalRoot,
    kQuotient,
    kReciprocal,
    kMultiplyAdd,
    kAddition,
    kAngle,
    kLogarithm,
    kPower,
    kKinds
};

inline constexpr int kOperations = 8;  // vector operations per turn of a loop, none waiting for another

struct LimitLoops {
    const char* target;
    int lanes;
    bool
        series;  // roots and divisions are estimates with a series, which keeps the multiply-adders busy, no divider
    void (*loops[kKinds])(int turns);
};

LimitLoops Loops_scalar();
LimitLoops Loops_neon();
LimitLoops Loops_avx2();
LimitLoops Loops_avx512();

}  // namespace zam::bench
