// Time per pixel and light of every kind of light, one thread.
#include <cstdio>

#include "bench/cases.h"
#include "bench/sections.h"
#include "bench/variants.h"

namespace zam::bench {
namespace {

void BenchCase(const Case& c, int rounds, Report* report) {
    const std::vector<Variant> variants = LiteralAndTargets();
    const Rows lit(c.scene, 24), dark(Dark(c.scene), 24);
    std::vector<std::function<void()>> bodies;
    for (const Variant& variant : variants) {
        bodies.push_back([&] { lit.Render(variant); });
        bodies.push_back([&] { dark.Render(variant); });
    }
    const std::vector<Timing> timings = Interleave(bodies, rounds, 0.008);

    std::printf("\n%d %s", c.lights, c.name.c_str());
    if (!c.scene.spot_lights.empty()) {
        const double coverage = literal::Coverage(literal::Resized(c.scene, 160, 90));
        std::printf(", %.0f %% of the picture each", 100 * coverage);
        report->Add(c.name, "scene", "coverage", {coverage, coverage, coverage});
    }
    std::printf("\n");
    const double to_ns = 1e9 / (lit.pixels() * c.lights);
    for (std::size_t i = 0; i < variants.size(); ++i) {
        const Timing &all = timings[2 * i], &lights = timings[2 * i + 1];
        const std::string& name = variants[i].name;
        const Spread ns = Scaled(all.cpu, to_ns), ns_lights = Scaled(lights.cpu, to_ns);
        const Spread times = Ratio(timings[0].cpu, all.cpu), times_lights = Ratio(timings[1].cpu, lights.cpu);
        std::printf("  %-10s %s", name.c_str(), Text(ns, 2).c_str());
        report->Add(c.name, name, kNsPerLight, ns);
        if (i > 0) {
            std::printf(" %s", Text(times, 1).c_str());
            report->Add(c.name, name, kTimesLiteral, times);
        } else {
            std::printf(" %s", std::string(Text(times, 1).size(), ' ').c_str());
        }
        std::printf(" %s", Text(ns_lights, 2).c_str());
        report->Add(c.name, name, kNsPerLightAlone, ns_lights);
        if (i > 0) {
            std::printf(" %s", Text(times_lights, 1).c_str());
            report->Add(c.name, name, kTimesLiteralAlone, times_lights);
        }
        std::printf("\n");
    }
    std::fflush(stdout);
}

}  // namespace

void BenchRows(const Options& options, Report* report) {
    bool heading = false;
    for (const Case& c : LightCases()) {
        if (!options.Wants(c.name)) continue;
        if (!heading) {
            PrintHeading(
                "Eight lights of a kind",
                "1920 x 1080, 16 bits, look Natural, one thread's CPU time. Median (min..max) of the "
                "rounds: ns per pixel and light\nwith all that a row costs, x literal; then the same "
                "for lights of strength 0, which leave nothing to finish.");
        }
        heading = true;
        BenchCase(c, options.rounds, report);
    }
}

}  // namespace zam::bench
