#include "host/watch/call_log.h"

namespace zam::host {

void CallLog::clear() {
    calls_.clear();
    names_.clear();
    suites_.clear();
}

void CallLog::set_plan(FaultPlan plan) {
    plan_ = std::move(plan);
    count_.clear();
    met_ = 0;
}

Fault CallLog::enter(std::string_view call) {
    if (recording_) calls_.push_back(call);
    if (plan_.empty()) return {};
    return plan_.fault_of(call, ++count_[call]);
}

void CallLog::asked_for_suite(std::string_view name, int version) {
    if (recording_) suites_.push_back(std::string(name) + " " + std::to_string(version));
}

const std::vector<std::string>& CallLog::names() const {
    if (names_.size() < calls_.size()) {
        names_.reserve(calls_.size());
        for (std::size_t i = names_.size(); i < calls_.size(); ++i) names_.emplace_back(calls_[i]);
    }
    return names_;
}

}  // namespace zam::host
