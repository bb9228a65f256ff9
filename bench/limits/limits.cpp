// What the machine could do: throughput of the operations that formulas are made of, and of memory.
#include <cstdio>
#include <cstring>

#include "bench/limits/loops.h"
#include "bench/sections.h"
#include "bench/variants.h"

namespace zam::bench {
namespace {

std::vector<LimitLoops> WidthsOfThisMachine() {
    std::vector<LimitLoops> widths{ScalarLoops()};
#if defined(ZAM_BENCH_X86)
    if (__builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma")) widths.push_back(Avx2Loops());
    if (__builtin_cpu_supports("avx512f")) widths.push_back(Avx512Loops());
#endif
    return widths;
}

constexpr int kTurns = 10000;

// ns per vector operation
Spread Throughput(double (*loop)(int), int rounds) {
    volatile double sink = 0.0;
    const std::vector<Timing> timing = Interleave({[&] { sink = loop(kTurns); }}, rounds, 0.004);
    return Scaled(timing[0].cpu, 1e9 / (static_cast<double>(kTurns) * kOperations));
}

// A light's time in operations of the target's own width: how far the row is from what one divider or one
// multiply-add unit allows.
void PrintDistance(const std::string& name, const LimitLoops& loops, Spread root, Spread division,
                   Spread multiply_add, const Report& report) {
    for (const Variant& target : Targets()) {
        const Record* record = report.Find(name, target.name, kNsPerLightAlone);
        if (target.lanes != loops.lanes || !record) continue;
        const double ns = record->value.median * target.lanes;
        std::printf("  %-42s %-10s %8.2f %10.1f %10.1f %10.1f\n", name.c_str(), target.name.c_str(), ns,
                    ns / root.median, ns / division.median, ns / multiply_add.median);
    }
}

}  // namespace

void BenchLimits(const Options& options, Report* report) {
    if (!options.Wants("limits")) return;
    PrintHeading("Limits of the machine",
                 "ns per vector operation, many at a time; one thread. Multiply-add is fused on "
                 "vectors.");
    std::printf("\n  %-10s %-28s %-28s %s\n", "doubles", "square root", "division", "multiply-add");
    struct Measured {
        LimitLoops loops;
        Spread root, division, multiply_add;
    };
    std::vector<Measured> widths;
    for (const LimitLoops& loops : WidthsOfThisMachine()) {
        const Measured m{loops, Throughput(loops.square_root, options.rounds),
                         Throughput(loops.divide, options.rounds),
                         Throughput(loops.multiply_add, options.rounds)};
        widths.push_back(m);
        const std::string name = std::to_string(loops.lanes) + " doubles";
        std::printf("  %-10d %s %s %s\n", loops.lanes, Text(m.root, 3).c_str(), Text(m.division, 3).c_str(),
                    Text(m.multiply_add, 3).c_str());
        report->Add("limits", name, "ns per square root", m.root);
        report->Add("limits", name, "ns per division", m.division);
        report->Add("limits", name, "ns per multiply-add", m.multiply_add);
    }

    std::vector<unsigned char> block(std::size_t{64} << 20, 1);
    unsigned char value = 0;
    volatile unsigned char sink = 0;
    const std::vector<Timing> timing = Interleave({[&] {
                                                      std::memset(block.data(), ++value, block.size());
                                                      sink = block[block.size() / 2];
                                                  }},
                                                  options.rounds, 0.02);
    std::vector<double> rates;
    for (const double seconds : timing[0].wall)
        rates.push_back(1e-9 * static_cast<double>(block.size()) / seconds);
    const Spread rate = SpreadOf(rates);
    std::printf("  memset %s GB/s: %.2f ns per 16-bit pixel\n", Text(rate, 1).c_str(), 8.0 / rate.median);
    report->Add("limits", "memset", "GB/s", rate);

    std::printf("\nOne light on a vector of pixels, and as many operations as fit into that time\n\n");
    std::printf("  %-42s %-10s %8s %10s %10s %10s\n", "case", "target", "ns", "roots", "divisions",
                "mult-adds");
    for (const char* name :
         {"points Natural", "spheres Radius softness 50", "spots Natural feather 50 typical",
          "spots Natural feather 50 filling", "spots Distance feather 50 filling"}) {
        for (const Measured& m : widths) {
            PrintDistance(name, m.loops, m.root, m.division, m.multiply_add, *report);
        }
    }
}

}  // namespace zam::bench
