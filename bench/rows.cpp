// Time per pixel and light of every kind of light, one thread.
#include <cstdio>

#include "bench/cases.h"
#include "bench/sections.h"
#include "bench/variants.h"

namespace zam::bench {

void BenchRows(const Options& options, Report* report) {
    PrintHeading(
        "Eight lights of a kind",
        "1920 x 1080, 16 bits, look Natural, one thread's CPU time; all that a row costs, finishing "
        "included.\nns per pixel and light: median (min..max) of the rounds; x literal: of the rounds' "
        "ratios.");
    const std::vector<Variant> variants = LiteralAndTargets();
    for (const Case& c : LightCases()) {
        if (!options.Wants(c.name)) continue;
        const Rows rows(c.scene, 24);
        std::vector<std::function<void()>> bodies;
        for (const Variant& variant : variants) bodies.push_back([&] { rows.Render(variant); });
        const std::vector<Timing> timings = Interleave(bodies, options.rounds, 0.008);

        std::printf("\n%d %s", c.lights, c.name.c_str());
        if (!c.scene.spot_lights.empty()) {
            const double coverage = literal::Coverage(literal::Resized(c.scene, 160, 90));
            std::printf(", %.0f %% of the picture each", 100 * coverage);
            report->Add(c.name, "scene", "coverage", {coverage, coverage, coverage});
        }
        std::printf("\n");
        for (std::size_t i = 0; i < variants.size(); ++i) {
            const Spread ns = Scaled(timings[i].cpu, 1e9 / (rows.pixels() * c.lights));
            const Spread times = Ratio(timings[0].cpu, timings[i].cpu);
            std::printf("  %-10s %s ns", variants[i].name.c_str(), Text(ns, 2).c_str());
            if (i > 0) std::printf("   x literal %s", Text(times, 1).c_str());
            std::printf("\n");
            report->Add(c.name, variants[i].name, "ns per pixel and light", ns);
            if (i > 0) report->Add(c.name, variants[i].name, kTimesLiteral, times);
        }
        std::fflush(stdout);
    }
}

}  // namespace zam::bench
