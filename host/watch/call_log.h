#pragma once
// The calls that an effect makes to the host, in order, and the decision whether one fails. Nobody tells the log
// of a call while it is not listening.
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "host/watch/fault_plan.h"

namespace zam::host {

class CallLog {
  public:
    void record(bool on) { recording_ = on; }
    [[nodiscard]] bool listening() const { return recording_ || !plan_.empty(); }

    // Forgets the calls so far (the memory is kept for the next ones); the plan goes on counting.
    void clear();
    // Counting starts anew.
    void set_plan(FaultPlan plan);
    // Notes the call if it records, and answers what is planned for it. `call` must live as long as the program.
    Fault enter(std::string_view call);
    // The suite that Basic.AcquireSuite, entered last, was asked for.
    void asked_for_suite(std::string_view name, int version);
    // Planned faults that the effect has met: calls that answered a code, or whose results were spoilt.
    void met() { ++met_; }
    [[nodiscard]] int faults_met() const { return met_; }
    [[nodiscard]] const std::vector<std::string>& names() const;
    [[nodiscard]] const std::vector<std::string>& suites() const { return suites_; }  // "AEGP Light Suite 1"

  private:
    bool recording_ = false;
    FaultPlan plan_;
    int met_ = 0;
    std::unordered_map<std::string_view, int> count_;  // kept only while there is a plan
    std::vector<std::string_view> calls_;
    std::vector<std::string> suites_;
    mutable std::vector<std::string> names_;  // copies of calls_, made when somebody asks
};

}  // namespace zam::host
