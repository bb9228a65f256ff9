#pragma once
#include <string>

namespace zam::bench {

struct Machine {
    std::string processor;
    int cores = 1;  // that this process may run on
    std::string compiler, flags, effect_flags;
};

Machine DescribeMachine();
void PrintMachine(const Machine& machine);

}  // namespace zam::bench
