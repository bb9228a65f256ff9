// The distance to the limit: the operations that a formula needs, at the speed at which this machine does nothing else.
#include <cstdio>
#include <cstring>

#include "bench/cases.h"
#include "bench/limits/loops.h"
#include "bench/sections.h"
#include "bench/variants.h"
#include "tests/counted/work.h"

namespace zam::bench {
namespace {

// A target and the ns of its vector operations.
struct Machinery {
    LimitLoops loops;
    Variant rows;
    Spread ns[kKinds];
};

constexpr struct {
    const char* name;
    int turns;
} kKindsTimed[kKinds] = {
    {"root", 4000},       {"1 / root", 4000},      {"quotient", 4000},
    {"1 / number", 4000}, {"multiply-add", 20000}, {"addition", 20000},
    {"angle", 1000},      {"logarithm", 1000},     {"power", 500},
};

std::vector<Machinery> MachineriesOfThisMachine() {
    std::vector<LimitLoops> built{Loops_scalar()};
#if defined(ZAM_ROWS_NEON)
    built.push_back(Loops_neon());
#endif
#if defined(ZAM_ROWS_AVX2)
    built.push_back(Loops_avx2());
#endif
#if defined(ZAM_ROWS_AVX512)
    built.push_back(Loops_avx512());
#endif
    std::vector<Machinery> machineries;
    for (const Variant& target : Targets()) {
        for (const LimitLoops& loops : built) {
            if (target.name == loops.target) machineries.push_back({loops, target, {}});
        }
    }
    return machineries;
}

void TimeOperations(int rounds, std::vector<Machinery>* machineries, Report* report) {
    std::printf("\n  %-14s", "ns of a vector");
    for (const Machinery& m : *machineries) {
        std::printf(" %-27s", (m.rows.name + " (" + std::to_string(m.loops.lanes) + ")").c_str());
    }
    for (int kind = 0; kind < kKinds; ++kind) {
        const auto& [name, turns] = kKindsTimed[kind];
        std::vector<std::function<void()>> bodies;
        for (const Machinery& m : *machineries) {
            bodies.push_back([loop = m.loops.loops[kind], n = turns] { loop(n); });
        }
        const std::vector<Timing> timings = Interleave(bodies, rounds, 0.004);
        std::printf("\n  %-14s", name);
        for (std::size_t i = 0; i < timings.size(); ++i) {
            Machinery& m = (*machineries)[i];
            m.ns[kind] = Scaled(timings[i].cpu, 1e9 / (static_cast<double>(turns) * kOperations));
            std::printf(" %s", Text(m.ns[kind], 3).c_str());
            report->Add("limits", m.rows.name, std::string("ns per ") + name, m.ns[kind]);
        }
    }
    std::printf("\n");
}

// ns for a byte that is written to memory, past all caches.
double TimeMemory(int rounds, Report* report) {
    std::vector<unsigned char> block(std::size_t{64} << 20, 1);
    unsigned char value = 0;
    volatile unsigned char sink = 0;
    const auto write = [&] {
        std::memset(block.data(), ++value, block.size());
        sink = block[block.size() / 2];
    };
    const std::vector<Timing> timing = Interleave({write}, rounds, 0.02);
    const Spread ns = Scaled(timing[0].wall, 1e9 / static_cast<double>(block.size()));
    std::printf("  %-14s %s (%.1f GB/s, past the caches)\n", "byte written", Text(ns, 3).c_str(),
                1.0 / ns.median);
    report->Add("limits", "memory", "ns per byte", ns);
    return ns.median;
}

struct Limit {
    double ns = 0.0;
    const char* by = "";
    void AtLeast(double other, const char* unit) {
        if (other > ns) *this = {other, unit};
    }
};

// Divider, multiply-adders, adders and memory at work side by side, none of them ever waiting.
Limit LimitOf(const Work& work, const Machinery& m, double ns_per_byte) {
    const auto ns = [&](long operations, Kind kind) {
        return static_cast<double>(operations) * m.ns[kind].median / m.loops.lanes;
    };
    const double divider = ns(work.roots, kRoot) + ns(work.inverse_roots, kReciprocalRoot) +
                           ns(work.divisions, kQuotient) + ns(work.reciprocals, kReciprocal);
    const double multiplications = ns(work.multiplications, kMultiplyAdd);
    Limit limit;
    limit.AtLeast(m.loops.series ? 0.0 : divider, "divider");
    limit.AtLeast(multiplications + (m.loops.series ? divider : 0.0), "multiply-adds");
    limit.AtLeast(ns(work.additions, kAddition), "additions");
    limit.AtLeast(static_cast<double>(work.bytes) * ns_per_byte, "memory");
    return limit;
}

Work counted;  // by CountingRow
void CountingRow(const _RenderData& frame, A_long y, PF_Pixel* out) { CountRow(frame, y, out, &counted); }

void PrintDistance(const Case& c, const std::vector<Machinery>& machineries, double ns_per_byte, int rounds,
                   Report* report) {
    const Rows rows(c.scene, 24);
    counted = {};
    rows.Render({"counted", 1, CountingRow});
    const double all = rows.pixels() * c.lights;
    const auto each = [all](long operations) { return static_cast<double>(operations) / all; };
    std::printf("\n%d %s: %.2f roots, %.2f divisions, %.1f multiply-adds, %.1f additions, %.2f bytes\n",
                c.lights, c.name.c_str(), each(counted.roots + counted.inverse_roots),
                each(counted.divisions + counted.reciprocals), each(counted.multiplications),
                each(counted.additions), each(counted.bytes));
    std::vector<std::function<void()>> bodies;
    for (const Machinery& m : machineries) bodies.push_back([&] { rows.Render(m.rows); });
    const std::vector<Timing> timings = Interleave(bodies, rounds, 0.008);
    for (std::size_t i = 0; i < machineries.size(); ++i) {
        const Machinery& m = machineries[i];
        const Limit limit = LimitOf(counted, m, ns_per_byte);
        const double limit_ns = limit.ns / all;
        const Spread ns = Scaled(timings[i].cpu, 1e9 / all), times = Scaled(timings[i].cpu, 1e9 / limit.ns);
        std::printf("  %-10s %8.2f %-14s %s %s\n", m.rows.name.c_str(), limit_ns, limit.by,
                    Text(ns, 2).c_str(), Text(times, 2).c_str());
        report->Add("limits " + c.name, m.rows.name, "ns per pixel and light, limit",
                    {limit_ns, limit_ns, limit_ns});
        report->Add("limits " + c.name, m.rows.name, kNsPerLight, ns);
        report->Add("limits " + c.name, m.rows.name, "x limit", times);
    }
    std::fflush(stdout);
}

}  // namespace

void BenchLimits(const Options& options, Report* report) {
    if (!options.Wants("limits")) return;
    PrintHeading(
        "Limits of the machine",
        "What one thread can do when it does nothing else: ns per vector operation of each target (lanes).");
    std::vector<Machinery> machineries = MachineriesOfThisMachine();
    TimeOperations(options.rounds, &machineries, report);
    const double ns_per_byte = TimeMemory(options.rounds, report);

    PrintHeading(
        "Distance to the limit",
        "Operations per pixel and light, with all that a row costs; then for each target the ns that they "
        "take "
        "at least, and in what,\nthe ns measured, and measured / limit. Roots and divisions count as "
        "multiply-adds where they are a series.");
    std::vector<Case> cases = LightCases();
    for (const auto& [name, look] :
         {std::pair{"sphere, look Natural", Look::natural},
          std::pair{"sphere, look Adjustable Natural", Look::adjustable_natural}}) {
        cases.push_back({name, SphereAroundTheCamera(look), 1});
        cases.back().scene.gamma = 2.2;
    }
    for (const Case& c : cases) PrintDistance(c, machineries, ns_per_byte, options.rounds, report);
}

}  // namespace zam::bench
