#include "bench/machine.h"

#include <cstdio>
#include <fstream>

#include "bench/variants.h"
#include "host/runner/cores.h"

namespace zam::bench {

Machine DescribeMachine() {
    Machine machine;
    machine.processor = "unknown";
    std::ifstream info("/proc/cpuinfo");
    std::string implementer;  // of an arm64 processor, which has no name there
    for (std::string line; std::getline(info, line);) {
        const std::size_t colon = line.find(": ");
        if (colon == std::string::npos) continue;
        const std::string value = line.substr(colon + 2);
        if (line.starts_with("CPU implementer")) implementer = value;
        if (line.starts_with("CPU part"))
            machine.processor = "implementer " + implementer + ", part " + value;
        if (line.starts_with("model name")) machine.processor = value;
        if (machine.processor != "unknown") break;
    }
    machine.cores = host::available_cores();
    machine.compiler = ZAM_BENCH_COMPILER;
    machine.flags = ZAM_BENCH_FLAGS;
    machine.effect_flags = ZAM_EFFECT_FLAGS;
    return machine;
}

void PrintMachine(const Machine& machine) {
    std::printf("machine   %s, %d cores\n", machine.processor.c_str(), machine.cores);
    std::printf("compiler  %s\n", machine.compiler.c_str());
    std::printf("flags     %s; effect also %s; literal renderer also -O2\n", machine.flags.c_str(),
                machine.effect_flags.c_str());
    std::printf("          %s\n", ZAM_TARGET_FLAGS);
    std::printf("targets  ");
    for (const Variant& variant : Targets()) std::printf(" %s (%d)", variant.name.c_str(), variant.lanes);
    std::printf("; chosen: %s\n", ChosenVariant().name.c_str());
}

}  // namespace zam::bench
