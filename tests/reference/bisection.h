#pragma once
// Where an inside test changes along a ray.

#include "tests/reference/real.h"

namespace zam::reference {

// `test` holds at `yes` and fails at `no`, on either side, and changes once between them.  Returns the place
// of the change to the last bit of long double.
template <class Test>
Real last_true(const Test& test, Real yes, Real no) {
    for (;;) {
        const Real middle = yes + (no - yes) / 2;
        if (middle == yes || middle == no) return yes;
        (test(middle) ? yes : no) = middle;
    }
}

// Steps from `yes`, where `test` holds, by `step`, 2 step, 4 step ... until it fails (or the line ends), then
// bisects.
template <class Test>
Real walk_out(const Test& test, Real yes, Real step) {
    Real no = yes + step;
    while (test(no) && std::isfinite(no)) {
        yes = no;
        step *= 2;
        no = yes + step;
    }
    return last_true(test, yes, no);
}

}  // namespace zam::reference
