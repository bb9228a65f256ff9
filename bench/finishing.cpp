// The finishing pass: from four sums per pixel to four channel codes.
#include <cstdio>

#include "bench/cases.h"
#include "bench/sections.h"
#include "bench/variants.h"

namespace zam::bench {
namespace {

// No target lets the pass be called alone. Rows are timed with a light, and with the same light at strength 0,
// which leaves all pixels as they are; the pass is the difference.
std::vector<double> Differences(const Timing& lit, const Timing& dark) {
    std::vector<double> rest;
    for (std::size_t i = 0; i < lit.cpu.size(); ++i) rest.push_back(lit.cpu[i] - dark.cpu[i]);
    return rest;
}

void BenchLook(const std::string& name, Look look, int rounds, Report* report) {
    const std::vector<Variant> variants = LiteralAndTargets();
    literal::Scene scene = SphereAroundTheCamera(look);
    scene.gamma = 2.2;
    const Rows lit(scene, 48), dark(Dark(scene), 48);
    std::vector<std::function<void()>> bodies;
    for (const Variant& variant : variants) {
        bodies.push_back([&] { lit.Render(variant); });
        bodies.push_back([&] { dark.Render(variant); });
    }
    const std::vector<Timing> timings = Interleave(bodies, rounds, 0.008);

    std::printf("\n%s\n", name.c_str());
    const std::vector<double> literal_pass = Differences(timings[0], timings[1]);
    for (std::size_t i = 0; i < variants.size(); ++i) {
        const std::vector<double> pass = Differences(timings[2 * i], timings[2 * i + 1]);
        const Spread ns = Scaled(pass, 1e9 / lit.pixels()), times = Ratio(literal_pass, pass);
        std::printf("  %-10s %s", variants[i].name.c_str(), Text(ns, 2).c_str());
        report->Add(name, variants[i].name, "ns per pixel", ns);
        if (i > 0) {
            std::printf(" %s", Text(times, 1).c_str());
            report->Add(name, variants[i].name, kTimesLiteral, times);
        }
        std::printf("\n");
    }
    std::fflush(stdout);
}

}  // namespace

void BenchFinishing(const Options& options, Report* report) {
    const struct {
        const char* name;
        Look look;
    } looks[] = {{"finishing Natural", Look::natural},
                 {"finishing Linear", Look::linear},
                 {"finishing Adjustable Linear", Look::adjustable_linear},
                 {"finishing Adjustable Natural", Look::adjustable_natural}};
    bool heading = false;
    for (const auto& look : looks) {
        if (!options.Wants(look.name)) continue;
        if (!heading) {
            PrintHeading(
                "Finishing pass",
                "16 bits, every pixel lit: rows with one light less the same rows with its strength at "
                "0. ns per pixel, x literal.");
        }
        heading = true;
        BenchLook(look.name, look.look, options.rounds, report);
    }
}

}  // namespace zam::bench
