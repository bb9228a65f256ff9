#pragma once
// The command line.
#include <string>

namespace zam::bench {

struct Options {
    int rounds = 9;
    bool quick = false;  // fewer rounds, one picture size
    std::string filter;  // only cases whose name contains it
    std::string json;    // file to write, if any

    [[nodiscard]] bool Wants(const std::string& name) const { return name.find(filter) != std::string::npos; }
};

}  // namespace zam::bench
