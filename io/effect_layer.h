#pragma once
// The layer that carries the effect when a scene names none.
#include "host/composition/composition.h"

namespace zam::io {

// A 2D solid of the composition's size, "Haze", on top of the stack and through the whole composition. Sets
// composition.effect.layer. Composition size, duration and the other layers' ids must be there.
void add_effect_layer(host::Composition& composition);

}  // namespace zam::io
