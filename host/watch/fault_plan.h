#pragma once
// Which host calls fail. A call's name is "Layer.AEGP_GetLayerName", "Basic.AcquireSuite",
// "Utils.host_new_handle"...: the table's short name and the interface's function name.
#include <map>
#include <string>
#include <string_view>
#include <utility>

#include "hostapi/types.h"

namespace zam::host {

class FaultPlan {
  public:
    // The nth call of that name (1 is the first, counted from the moment the session was given the plan)
    // answers `code`; handle allocations and locks answer null instead. Calls that give something back take
    // it all the same. A code of 0 plans nothing.
    FaultPlan& fail(std::string call, int nth, A_Err code) {
        codes_[std::move(call)][nth] = code;
        return *this;
    }
    [[nodiscard]] A_Err code_for(std::string_view call, int nth) const {
        const auto planned = codes_.find(call);
        if (planned == codes_.end()) return 0;
        const auto code = planned->second.find(nth);
        return code == planned->second.end() ? 0 : code->second;
    }
    [[nodiscard]] bool empty() const { return codes_.empty(); }

  private:
    std::map<std::string, std::map<int, A_Err>, std::less<>> codes_;
};

}  // namespace zam::host
