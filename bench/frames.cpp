// Whole frames: sizes, numbers of lights, one and two threads; and lights outside the picture.
#include <algorithm>
#include <cmath>
#include <cstdio>

#include "bench/cases.h"
#include "bench/sections.h"
#include "bench/variants.h"
#include "host/runner/row_pool.h"

namespace zam::bench {
namespace {

struct FrameCase {
    std::string name;
    literal::Scene scene;
    int lights;
};

std::string Size(A_long width, A_long height) { return std::to_string(width) + "x" + std::to_string(height); }

std::vector<FrameCase> FrameCases(bool quick) {
    std::vector<FrameCase> cases;
    const A_long widths[] = {1920, 480, 960, 3840};
    for (const A_long width : widths) {
        const A_long height = width * 9 / 16;
        for (const int lights : {1, 8, 64}) {
            cases.push_back({"frame " + Size(width, height) + " " + std::to_string(lights) + " mixed",
                             literal::Resized(MixedScene((lights + 1) / 2, lights / 2), width, height),
                             lights});
        }
        if (quick) break;
    }
    for (const int lights : {1, 8, 64}) {
        const std::string place = "frame 1920x1080 " + std::to_string(lights);
        cases.push_back({place + " points", MixedScene(lights, 0), lights});
        cases.push_back({place + " spots", MixedScene(0, lights), lights});
    }
    return cases;
}

// Rows that keep the slowest variant below about half a second.
A_long RowsOf(const FrameCase& c, bool quick) {
    const double row = 1e-9 * c.scene.width * (10.0 + 25.0 * c.lights);
    return std::min(c.scene.height, static_cast<A_long>(std::ceil((quick ? 0.1 : 0.45) / row)));
}

void PrintFrame(const FrameCase& c, const Rows& rows, const Timing* all, Report* report) {
    const std::vector<Variant> variants = LiteralAndTargets();
    const double frame_pixels = static_cast<double>(c.scene.width) * c.scene.height;
    std::printf(
        "\n%s%s\n", c.name.c_str(),
        rows.count() == c.scene.height ? "" : (", " + std::to_string(rows.count()) + " of its rows").c_str());
    for (std::size_t i = 0; i < variants.size(); ++i) {
        const Timing &one = all[2 * i], &two = all[2 * i + 1];
        const Spread ns = Scaled(one.cpu, 1e9 / rows.pixels());
        const double to_ms = 1e3 * frame_pixels / rows.pixels();
        const Spread ms = Scaled(one.wall, to_ms), ms2 = Scaled(two.wall, to_ms);
        const Spread times = Ratio(all[0].cpu, one.cpu), threads = Ratio(one.wall, two.wall);
        std::printf("  %-10s %8.1f ms %8.1f ms %s %s ns", variants[i].name.c_str(), ms.median, ms2.median,
                    Text(threads, 2).c_str(), Text(ns, 2).c_str());
        if (i > 0) std::printf("   x literal %s", Text(times, 1).c_str());
        std::printf("\n");
        report->Add(c.name, variants[i].name, "ms", ms);
        report->Add(c.name, variants[i].name, "ms, two threads", ms2);
        report->Add(c.name, variants[i].name, kTimesOneThread, threads);
        report->Add(c.name, variants[i].name, "ns per pixel", ns);
        if (i > 0) report->Add(c.name, variants[i].name, kTimesLiteral, times);
    }
}

// Time per pixel of 8 and 64 lights in units of one light's.
void PrintGrowth(const Report& report) {
    const auto ns = [&](const std::string& lights, const Variant& variant) {
        const Record* r = report.Find("frame 1920x1080 " + lights, variant.name, "ns per pixel");
        return r ? r->value.median : 0.0;
    };
    bool heading = false;
    for (const std::string kind : {" mixed", " points", " spots"}) {
        for (const Variant& variant : LiteralAndTargets()) {
            const double one = ns("1" + kind, variant), most = ns("64" + kind, variant);
            if (!(one > 0.0) || !(most > 0.0)) continue;
            if (!heading)
                std::printf("\nGrowth with the number of lights, 1920x1080: 8 and 64 in units of one\n");
            heading = true;
            std::printf("  %-7s %-10s %8.1f %8.1f\n", kind.c_str() + 1, variant.name.c_str(),
                        ns("8" + kind, variant) / one, most / one);
        }
    }
}

// ns per pixel of the same picture at all sizes.
void PrintSizes(Report* report) {
    bool heading = false;
    for (const std::string lights : {"1", "8", "64"}) {
        if (!report->Find("frame 480x270 " + lights + " mixed", "literal", "ms")) continue;
        if (!heading)
            std::printf(
                "\nns per pixel at 480x270, 960x540, 1920x1080, 3840x2160, one thread; most / least\n");
        heading = true;
        for (const Variant& variant : LiteralAndTargets()) {
            std::printf("  %2s mixed %-10s", lights.c_str(), variant.name.c_str());
            std::vector<double> all;
            for (const char* size : {"480x270", "960x540", "1920x1080", "3840x2160"}) {
                const Record* r = report->Find(std::string("frame ") + size + " " + lights + " mixed",
                                               variant.name, "ns per pixel");
                std::printf(" %9.2f", r ? r->value.median : 0.0);
                if (r) all.push_back(r->value.median);
            }
            const Spread spread = SpreadOf(all);
            const double times = spread.high / spread.low;
            std::printf("   x%.2f\n", times);
            if (lights == "8") report->Add(kAllSizes, variant.name, kTimesLeast, {times, times, times});
        }
    }
}

}  // namespace

void BenchFrames(const Options& options, Report* report) {
    std::vector<FrameCase> cases = FrameCases(options.quick);
    std::erase_if(cases, [&](const FrameCase& c) { return !options.Wants(c.name); });
    if (cases.empty()) return;
    PrintHeading(
        "Frames",
        "Mixed: half point, half spot lights. All \"Natural\", feather 50 %, look Natural, 16 bits, "
        "finishing "
        "included, clearing not.\nms per frame on one and on two threads (wall time; from the rows "
        "that were rendered), their ratio, ns per\npixel (one thread's CPU time), x literal of that.");
    const std::vector<Variant> variants = LiteralAndTargets();
    host::RowPool two(2);
    for (const FrameCase& c : cases) {
        const Rows rows(c.scene, RowsOf(c, options.quick));
        std::vector<std::function<void()>> bodies;
        for (const Variant& variant : variants) {
            bodies.push_back([&] { rows.Render(variant); });
            bodies.push_back([&] {
                two.run(0, rows.count(), [&](A_long index) {
                    rows.RenderRow(variant, index);
                    return A_Err{0};
                });
            });
        }
        PrintFrame(c, rows, Interleave(bodies, options.quick ? 3 : 7, 0.005).data(), report);
        std::fflush(stdout);
    }
    PrintSizes(report);
    PrintGrowth(*report);
}

void BenchOutside(const Options& options, Report* report) {
    const std::string name = "4 points with 64 spots outside";
    if (!options.Wants(name)) return;
    PrintHeading(
        "Lights outside the picture",
        "4 point lights with 64 spot lights that do not reach the picture, 1920 x 1080: ns per pixel, "
        "and in\nunits of the 4 point lights alone.");
    const std::vector<Variant> variants = LiteralAndTargets();
    const Rows alone(FourPoints(false), 24), with(FourPoints(true), 24);
    std::vector<std::function<void()>> bodies;
    for (const Variant& variant : variants) {
        bodies.push_back([&] { alone.Render(variant); });
        bodies.push_back([&] { with.Render(variant); });
    }
    const std::vector<Timing> timings = Interleave(bodies, options.rounds, 0.008);
    std::printf("\n");
    for (std::size_t i = 0; i < variants.size(); ++i) {
        const Spread ns = Scaled(timings[2 * i + 1].cpu, 1e9 / with.pixels());
        const Spread times = Ratio(timings[2 * i + 1].cpu, timings[2 * i].cpu);
        std::printf("  %-10s %s ns   x alone %s\n", variants[i].name.c_str(), Text(ns, 2).c_str(),
                    Text(times, 2).c_str());
        report->Add(name, variants[i].name, "ns per pixel", ns);
        report->Add(name, variants[i].name, kTimesWithout, times);
    }
}

}  // namespace zam::bench
