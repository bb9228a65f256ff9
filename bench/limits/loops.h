#pragma once
// Loops of one kind of operation on vectors of doubles, for each vector width of the machine.

namespace zam::bench {

inline constexpr int kOperations = 12;  // vector operations per turn of a loop, none waiting for another

struct LimitLoops {
    int lanes;
    // So many turns; what they give back is of no interest but keeps them from being left out.
    double (*square_root)(int turns);
    double (*divide)(int turns);
    double (*multiply_add)(int turns);  // fused on vectors
};

LimitLoops ScalarLoops();
LimitLoops Avx2Loops();
LimitLoops Avx512Loops();

}  // namespace zam::bench
