#pragma once
// A host that answers what a walk over the layers asks, and checks nothing: walks over it cost what the calls from
// a loaded file themselves cost.
#include <vector>

#include "host/runner/plugin.h"

namespace zam::bench {

// Seconds, round by round, of the walks that setting up a frame takes: one for each light, one for each count.
std::vector<double> TimeBareWalks(const host::Plugin& plugin, int lights, int rounds);

}  // namespace zam::bench
