#pragma once
// The effect's controls, for settings to be held against.
#include <vector>

#include "host/runner/control.h"

namespace zam::fuzz {

[[nodiscard]] const std::vector<host::Control>& effect_controls();

// A control takes the setting, with finite values within its range, or it refuses it by a clear message.
void require_resolves(const host::ControlSetting& setting, const host::Composition& composition);

}  // namespace zam::fuzz
