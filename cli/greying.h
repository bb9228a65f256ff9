#pragma once
// What greys the controls, found out by trying: the plug-in is the only one that knows.
#include <map>
#include <vector>

#include "host/runner/session.h"

namespace zam::cli {

// A control greys another while it has one of these values.
struct Greying {
    int control = 0;             // index
    std::vector<double> values;  // choices from 1, boxes 0 or 1
};

// What greys each control, by its index; what nothing greys is not among them. Tries all values of the popups and boxes
// that matter, and leaves them at their defaults. Throws PluginError for greying that does not come from single
// controls.
[[nodiscard]] std::map<int, std::vector<Greying>> find_greying(host::Session& session);

}  // namespace zam::cli
