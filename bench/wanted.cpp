// The ratios that the wide targets are to reach.
#include <cstdio>

#include "bench/sections.h"
#include "bench/variants.h"

namespace zam::bench {
namespace {

struct Wanted {
    const char* name;
    const char* metric;
    double eight_lanes, four_lanes;  // 0: not set
    bool at_most = false;
};

constexpr Wanted kWanted[] = {
    {"points Natural", kTimesLiteral, 12, 6.3},
    {"spheres Radius softness 50", kTimesLiteral, 8, 5},
    {"spots Natural feather 50 typical", kTimesLiteral, 16, 7.5},
    {"spots Natural feather 50 filling", kTimesLiteral, 10.5, 4.6},
    {"spots Natural feather 50 filling refined", kTimesLiteral, 9, 4},
    {"spots Distance feather 50 typical", kTimesLiteral, 13.5, 0},
    {"spots Distance feather 50 filling", kTimesLiteral, 9, 0},
    {"spots Constant feather 50 typical", kTimesLiteral, 13, 7},
    {"finishing Natural", kTimesLiteral, 5, 3},
    {"finishing Adjustable Linear", kTimesLiteral, 4, 2.5},
    {"finishing Adjustable Natural", kTimesLiteral, 4, 2.5},
    {"frame 1920x1080 8 lights", kTimesLiteral, 12, 6.8},
    {"frame 1920x1080 64 points", kTimesLiteral, 12, 0},
    {"frame 1920x1080 64 spots", kTimesLiteral, 17, 0},
    {"frame 1920x1080 8 lights", kTimesOneThread, 1.85, 1.85},
    {"4 points with 64 spots outside", kTimesWithout, 2.3, 0, true},
};

}  // namespace

void PrintWanted(const Report& report) {
    PrintHeading("Wanted ratios", "Medians of this run beside what is wanted; only a quiet machine decides.");
    std::printf("\n  %-42s %-15s %-10s %8s   %s\n", "case", "ratio", "target", "wanted", "measured");
    int missed = 0, shown = 0;
    for (const Wanted& wanted : kWanted) {
        for (const Variant& target : Targets()) {
            const double goal = target.lanes == 8   ? wanted.eight_lanes
                                : target.lanes == 4 ? wanted.four_lanes
                                                    : 0.0;
            const Record* record = report.Find(wanted.name, target.name, wanted.metric);
            if (goal == 0.0 || !record) continue;
            const bool reached = wanted.at_most ? record->value.median <= goal : record->value.median >= goal;
            std::printf("  %-42s %-15s %-10s %s %5.1f   %s %s\n", wanted.name, wanted.metric,
                        target.name.c_str(), wanted.at_most ? "<=" : ">=", goal,
                        Text(record->value, 2).c_str(), reached ? "" : "missed");
            ++shown;
            missed += !reached;
        }
    }
    std::printf("  %d of %d reached\n", shown - missed, shown);
}

}  // namespace zam::bench
