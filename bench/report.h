#pragma once
// What was measured, collected for the summary and for machines to read.
#include <string>
#include <vector>

#include "bench/machine.h"
#include "bench/timing.h"

namespace zam::bench {

struct Record {
    std::string name, variant, metric;
    Spread value;
};

// Metrics that more than one part asks for. "Alone": without the finishing pass.
inline constexpr char kNsPerLight[] = "ns per pixel and light";
inline constexpr char kNsPerLightAlone[] = "ns per pixel and light, alone";
inline constexpr char kTimesLiteral[] = "x literal";
inline constexpr char kTimesLiteralAlone[] = "x literal, alone";
inline constexpr char kTimesOneThread[] = "x one thread";
inline constexpr char kTimesWithout[] = "x without them";
inline constexpr char kTimesOneRow[] = "x one row";
inline constexpr char kTimesLeast[] = "x least";

// Record of the time per pixel at all sizes of a frame.
inline constexpr char kAllSizes[] = "480x270 to 3840x2160 8 mixed";

class Report {
  public:
    void Add(const std::string& name, const std::string& variant, const std::string& metric, Spread value);
    [[nodiscard]] bool empty() const { return records_.empty(); }
    [[nodiscard]] const Record* Find(const std::string& name, const std::string& variant,
                                     const std::string& metric) const;
    // False when the file cannot be written.
    [[nodiscard]] bool WriteJson(const std::string& file, const Machine& machine) const;

  private:
    std::vector<Record> records_;
};

void PrintHeading(const std::string& title, const std::string& explanation);
// "12.34 (12.01..13.70)", padded
std::string Text(Spread value, int digits);

}  // namespace zam::bench
