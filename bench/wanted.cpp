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
    {"frame 1920x1080 8 mixed", kTimesLiteral, 12, 6.8},
    {"frame 1920x1080 64 points", kTimesLiteral, 12, 0},
    {"frame 1920x1080 64 spots", kTimesLiteral, 17, 0},
    {"frame 1920x1080 8 mixed", kTimesOneThread, 1.85, 1.85},
    {kAllSizes, kTimesLeast, 1.1, 1.1, true},
    {"set-up 1000 points", kTimesOneRow, 1, 1, true},
    {"set-up 1000 spots", kTimesOneRow, 1, 1, true},
    {"4 points with 64 spots outside", kTimesWithout, 2.3, 0, true},
};

}  // namespace

void PrintWanted(const Report& report) {
    std::string rows;
    int reached = 0, shown = 0;
    for (const Wanted& wanted : kWanted) {
        for (const Variant& target : Targets()) {
            const double goal = target.lanes == 8   ? wanted.eight_lanes
                                : target.lanes == 4 ? wanted.four_lanes
                                                    : 0.0;
            const Record* record = report.Find(wanted.name, target.name, wanted.metric);
            if (goal == 0.0 || !record) continue;
            const double measured = record->value.median;
            const bool good = wanted.at_most ? measured <= goal : measured >= goal;
            const Record* alone = report.Find(wanted.name, target.name, kTimesLiteralAlone);
            char line[200];
            std::snprintf(line, sizeof line, "  %-42s %-15s %-8s %s %5.2f   %s %-7s", wanted.name,
                          wanted.metric, target.name.c_str(), wanted.at_most ? "<=" : ">=", goal,
                          Text(record->value, 2).c_str(), good ? "" : "missed");
            rows += line;
            if (alone) rows += Text(alone->value, 2);
            rows += "\n";
            ++shown;
            reached += good;
        }
    }
    if (shown == 0) return;
    PrintHeading("Wanted ratios", "Medians of this run beside what is wanted; only a quiet machine decides.");
    std::printf("\n  %-42s %-15s %-8s %8s   %-34s %s\n%s  %d of %d reached\n", "case", "ratio", "target",
                "wanted", "   measured", "   alone", rows.c_str(), reached, shown);
    const Record* threads = report.Find("frame 1920x1080 8 mixed", "literal", kTimesOneThread);
    if (threads && threads->value.median < 1.85) {
        std::printf(
            "  The machine was not quiet: the literal renderer itself gained x%.2f from a second thread.\n",
            threads->value.median);
    }
}

}  // namespace zam::bench
