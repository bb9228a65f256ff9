#pragma once
// The operations that a row takes, counted while the effect's own renderer runs it on one lane.
#include "effect/render/render_data.h"

namespace zam {

// What formulas ask their lane type for (kernels/lanes.h). Comparisons, selections and moves are not counted.
struct Work {
    long roots = 0, inverse_roots = 0;        // Root, ReciprocalRoot
    long divisions = 0, reciprocals = 0;      // Quotient and /, Reciprocal
    long multiplications = 0, additions = 0;  // fused ones are multiplications
    long bytes = 0;                           // of pixels, written
};

// Renders row y as a RowFunc does, and adds what it takes to *sum.
void CountRow(const _RenderData& frame, A_long y, PF_Pixel* out, Work* sum);

}  // namespace zam
