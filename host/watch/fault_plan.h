#pragma once
// Which host calls fail, and how. A call's name is "Layer.AEGP_GetLayerName", "Basic.AcquireSuite",
// "Utils.host_new_handle"...: the table's short name and the interface's function name.
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <utility>

#include "hostapi/types.h"

namespace zam::host {

struct Fault {
    // What becomes of the call and of its results.
    enum class Results : std::uint8_t {
        untouched,  // nothing is done; handle allocations and locks answer null
        rubbish,  // all bytes are `byte`, handles and names included; without results, the work is done all the same
        null,   // handles are null, names empty; without either, all is as ever
        wrong,  // as rubbish, but handles are good
    };
    A_Err code = 0;  // the answer
    Results results = Results::untouched;
    std::uint8_t byte = 0xFF;

    // Is there anything to go wrong?
    explicit operator bool() const { return code != 0 || results != Results::untouched; }
};

class FaultPlan {
  public:
    static constexpr int kEvery = 0;

    // The nth call of that name (1 is the first, counted from the moment the session was given the plan), or every
    // one, fails so. Calls that give something back take it all the same, and answer the code.
    FaultPlan& fail(std::string call, int nth, Fault fault) {
        faults_[std::move(call)][nth] = fault;
        return *this;
    }
    FaultPlan& fail(std::string call, int nth, A_Err code) {
        return fail(std::move(call), nth, Fault{.code = code});
    }
    [[nodiscard]] Fault fault_of(std::string_view call, int nth) const {
        const auto planned = faults_.find(call);
        if (planned == faults_.end()) return {};
        auto fault = planned->second.find(nth);
        if (fault == planned->second.end()) fault = planned->second.find(kEvery);
        return fault == planned->second.end() ? Fault{} : fault->second;
    }
    [[nodiscard]] bool empty() const { return faults_.empty(); }

  private:
    std::map<std::string, std::map<int, Fault>, std::less<>> faults_;
};

}  // namespace zam::host
