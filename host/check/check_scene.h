#pragma once
// The composition that a plug-in is driven over: small, with an odd width, and with something of each kind in it.
#include "host/composition/composition.h"

namespace zam::host {

inline constexpr LayerId kCheckWall = 2;  // a 3D solid, for controls that pick a layer

[[nodiscard]] Composition check_scene();

}  // namespace zam::host
