#pragma once
// The parts of the run; each prints its table and leaves its figures in the report.
#include "bench/options.h"
#include "bench/report.h"

namespace zam::bench {

void BenchRows(const Options& options, Report* report);       // eight lights of a kind
void BenchFinishing(const Options& options, Report* report);  // from sums of light to channel codes
void BenchFrames(const Options& options, Report* report);     // sizes, light counts, threads
void BenchOutside(const Options& options, Report* report);    // lights that are not in the picture
void BenchSetups(const Options& options, Report* report);     // from the command to the first row
void BenchMarching(const Options& options, Report* report);   // what adding up steps would cost
void BenchLimits(const Options& options, Report* report);     // what the machine could do
void BenchRoad(const Options& options, Report* report);       // the program, from scene to files

// Measured ratios beside those that are wanted.
void PrintWanted(const Report& report);

}  // namespace zam::bench
