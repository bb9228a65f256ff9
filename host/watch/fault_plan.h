#pragma once
// Which host calls fail. A call's name is "Layer.AEGP_GetLayerName", "Basic.AcquireSuite",
// "Utils.host_new_handle"...: the table's short name and the interface's function name.
#include <map>
#include <string>
#include <utility>

#include "hostapi/types.h"

namespace zam::host {

class FaultPlan {
  public:
    // The nth call of that name (1 is the first) answers `code`; handle allocations answer null instead.
    FaultPlan& fail(std::string call, int nth, A_Err code) {
        codes_[{std::move(call), nth}] = code;
        return *this;
    }
    [[nodiscard]] A_Err code_for(const std::string& call, int nth) const {
        const auto found = codes_.find({call, nth});
        return found == codes_.end() ? 0 : found->second;
    }
    [[nodiscard]] bool empty() const { return codes_.empty(); }

  private:
    std::map<std::pair<std::string, int>, A_Err> codes_;
};

}  // namespace zam::host
