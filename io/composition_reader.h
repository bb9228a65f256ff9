#pragma once
// Our own composition format: JSON, described in docs/scene-format.md.
#include "host/composition/composition.h"
#include "io/json_document.h"

namespace zam::io {

// Throws SceneError, which names file, line and column, for whatever the format does not allow. Names of
// controls are not checked here: only the plug-in knows them.
[[nodiscard]] host::Composition read_composition(const JsonDocument& document);

}  // namespace zam::io
