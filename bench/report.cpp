#include "bench/report.h"

#include <cstdio>
#include <fstream>
#include <nlohmann/json.hpp>

#include "bench/variants.h"

namespace zam::bench {

void Report::Add(const std::string& name, const std::string& variant, const std::string& metric,
                 Spread value) {
    records_.push_back({name, variant, metric, value});
}

const Record* Report::Find(const std::string& name, const std::string& variant,
                           const std::string& metric) const {
    for (const Record& r : records_) {
        if (r.name == name && r.variant == variant && r.metric == metric) return &r;
    }
    return nullptr;
}

bool Report::WriteJson(const std::string& file, const Machine& machine) const {
    nlohmann::ordered_json out;
    out["machine"] = {{"processor", machine.processor},
                      {"cores", machine.cores},
                      {"compiler", machine.compiler},
                      {"flags", machine.flags},
                      {"effect_flags", machine.effect_flags}};
    for (const Variant& target : Targets()) {
        out["targets"].push_back({{"name", target.name}, {"lanes", target.lanes}});
    }
    out["chosen"] = ChosenVariant().name;
    out["results"] = nlohmann::ordered_json::array();
    for (const Record& r : records_) {
        out["results"].push_back({{"name", r.name},
                                  {"variant", r.variant},
                                  {"metric", r.metric},
                                  {"median", r.value.median},
                                  {"low", r.value.low},
                                  {"high", r.value.high}});
    }
    std::ofstream stream(file);
    stream << out.dump(1) << "\n";
    return static_cast<bool>(stream.flush());
}

void PrintHeading(const std::string& title, const std::string& explanation) {
    std::printf("\n%s\n%s\n", title.c_str(), explanation.c_str());
}

std::string Text(Spread value, int digits) {
    char text[80];
    std::snprintf(text, sizeof text, "%8.*f (%.*f..%.*f)", digits, value.median, digits, value.low, digits,
                  value.high);
    std::string padded = text;
    padded.resize(std::max<std::size_t>(padded.size(), 27), ' ');
    return padded;
}

}  // namespace zam::bench
