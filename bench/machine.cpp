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
    for (std::string line; std::getline(info, line);) {
        const std::size_t colon = line.find(": ");
        if (line.rfind("model name", 0) != 0 || colon == std::string::npos) continue;
        machine.processor = line.substr(colon + 2);
        break;
    }
    machine.cores = host::available_cores();
    machine.compiler = "g++ " __VERSION__;
    machine.flags = ZAM_BENCH_FLAGS;
    machine.effect_flags = ZAM_EFFECT_FLAGS;
    return machine;
}

void PrintMachine(const Machine& machine) {
    std::printf("machine   %s, %d cores\n", machine.processor.c_str(), machine.cores);
    std::printf("compiler  %s\n", machine.compiler.c_str());
    std::printf("flags     %s; effect also %s; literal renderer also -O2\n", machine.flags.c_str(),
                machine.effect_flags.c_str());
    std::printf("targets  ");
    for (const Variant& variant : Targets()) std::printf(" %s (%d)", variant.name.c_str(), variant.lanes);
    std::printf("; chosen: %s\n", ChosenVariant().name.c_str());
}

}  // namespace zam::bench
