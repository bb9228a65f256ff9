// zam_bench: time per pixel and light on every target, beside the literal renderer and the machine's limits.
#include <CLI/CLI.hpp>
#include <cstdio>

#include "bench/sections.h"

int main(int argc, char** argv) {
    using namespace zam::bench;
    Options options;
    CLI::App app("Times the effect's rows on every target of this machine beside the literal renderer.",
                 "zam_bench");
    app.add_flag("--quick", options.quick, "three rounds, one picture size");
    app.add_option("--filter", options.filter, "only cases whose name contains this");
    app.add_option("--json", options.json, "write all figures to this file");
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? 0 : 2;
    }
    if (options.quick) options.rounds = 3;

    const Machine machine = DescribeMachine();
    PrintMachine(machine);
    Report report;
    BenchRows(options, &report);
    BenchFinishing(options, &report);
    BenchOutside(options, &report);
    BenchFrames(options, &report);
    BenchSetups(options, &report);
    BenchMarching(options, &report);
    BenchLimits(options, &report);
    BenchRoad(options, &report);
    PrintWanted(report);
    if (report.empty()) {
        std::fprintf(stderr, "zam_bench: no case's name contains '%s'\n", options.filter.c_str());
        return 2;
    }
    if (!options.json.empty() && !report.WriteJson(options.json, machine)) {
        std::fprintf(stderr, "zam_bench: cannot write '%s'\n", options.json.c_str());
        return 1;
    }
    return 0;
}
