#pragma once
// What the slow reference renderer needs of a composition, read from its plain data without the effect or the
// interface.
#include "host/composition/composition.h"
#include "host/runner/session.h"
#include "tests/reference/slow_renderer.h"

namespace zam::test {

// The frame as the reference renderer draws it. The controls come from the composition's effect settings; a
// reach layer is taken from "Set Reach Layer". Lights are not filtered by name, switch or time.
host::Frame render_reference(const host::Composition& comp, const std::vector<host::Control>& controls,
                             double frame, const host::RenderSettings& settings);

}  // namespace zam::test
