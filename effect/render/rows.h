#pragma once
// Rendering of a row, once for each kind of processor: the same kernels compiled for more lanes. Which one runs is
// decided when the effect starts, not when it is built.
#include <span>

#include "effect/render/render_data.h"

namespace zam {

// Renders row y of the frame; `out` is the row's first pixel at the frame's depth. Any thread; allocates nothing.
using RowFunc = void (*)(const _RenderData& frame, A_long y, PF_Pixel* out);

struct RowTarget {
    const char* name;  // as ZAM_TARGET takes it
    int lanes;         // pixels at a time
    RowFunc render;
};

// The targets that were compiled in and that this processor can run, the widest last. The first has one lane and
// always runs.
std::span<const RowTarget> RowTargets();

// The widest of `targets` that is no wider than the target named `cap`, whether or not that one is among them; any name
// that is none, or null, leaves the choice free.
const RowTarget& TargetWithin(std::span<const RowTarget> targets, const char* cap);

// The widest of RowTargets() within what the environment variable ZAM_TARGET names; chosen by the first call.
const RowTarget& ChosenTarget();

}  // namespace zam
