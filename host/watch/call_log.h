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
    // Notes the call if it records, and answers 0 or the code planned for it. `call` must live as long as the
    // program.
    A_Err enter(std::string_view call);
    [[nodiscard]] const std::vector<std::string>& names() const;

  private:
    bool recording_ = false;
    FaultPlan plan_;
    std::unordered_map<std::string_view, int> count_;  // kept only while there is a plan
    std::vector<std::string_view> calls_;
    mutable std::vector<std::string> names_;  // copies of calls_, made when somebody asks
};

}  // namespace zam::host
