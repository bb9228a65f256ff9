// The finishing pass: from four sums per pixel to four channel codes.
#include <cstdio>

#include "bench/cases.h"
#include "bench/sections.h"
#include "bench/variants.h"

namespace zam::bench {
namespace {

constexpr int kMany = 9;

// No target lets the pass be called alone, and pixels without light skip it. So rows are timed with one light and
// with kMany equal ones, and what a light adds is taken off the rows with one: what remains is a row with a light
// that costs nothing. It still holds the ray's set-up.
std::vector<double> WithoutLights(const Timing& one, const Timing& many) {
    std::vector<double> rest;
    for (std::size_t i = 0; i < one.cpu.size(); ++i) {
        rest.push_back(one.cpu[i] - (many.cpu[i] - one.cpu[i]) / (kMany - 1));
    }
    return rest;
}

}  // namespace

void BenchFinishing(const Options& options, Report* report) {
    PrintHeading("Finishing pass",
                 "ns per pixel, 16 bits, every pixel lit: rows with one sphere around the camera, less what "
                 "each of\neight more spheres adds.");
    const struct {
        const char* name;
        Look look;
    } looks[] = {{"finishing Natural", Look::natural},
                 {"finishing Linear", Look::linear},
                 {"finishing Adjustable Linear", Look::adjustable_linear},
                 {"finishing Adjustable Natural", Look::adjustable_natural}};
    const std::vector<Variant> variants = LiteralAndTargets();
    for (const auto& look : looks) {
        if (!options.Wants(look.name)) continue;
        literal::Scene few = SpheresAroundTheCamera(1, look.look),
                       more = SpheresAroundTheCamera(kMany, look.look);
        few.gamma = more.gamma = 2.2;
        const Rows one(few, 48), many(more, 48);
        std::vector<std::function<void()>> bodies;
        for (const Variant& variant : variants) {
            bodies.push_back([&] { one.Render(variant); });
            bodies.push_back([&] { many.Render(variant); });
        }
        const std::vector<Timing> timings = Interleave(bodies, options.rounds, 0.008);

        std::printf("\n%s\n", look.name);
        const std::vector<double> literal_rest = WithoutLights(timings[0], timings[1]);
        for (std::size_t i = 0; i < variants.size(); ++i) {
            const std::vector<double> rest = WithoutLights(timings[2 * i], timings[2 * i + 1]);
            const Spread ns = Scaled(rest, 1e9 / one.pixels()), times = Ratio(literal_rest, rest);
            std::printf("  %-10s %s ns", variants[i].name.c_str(), Text(ns, 2).c_str());
            if (i > 0) std::printf("   x literal %s", Text(times, 1).c_str());
            std::printf("\n");
            report->Add(look.name, variants[i].name, "ns per pixel", ns);
            if (i > 0) report->Add(look.name, variants[i].name, kTimesLiteral, times);
        }
        std::fflush(stdout);
    }
}

}  // namespace zam::bench
