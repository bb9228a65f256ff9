#pragma once
// One entry of a composition file's "layers".
#include <string>
#include <vector>

#include "host/composition/composition.h"
#include "io/json_document.h"

namespace zam::io {

// `layer "Front key"`, or `layer 3` for one without a name: how messages call it.
[[nodiscard]] std::string layer_subject(const JsonValue& value, std::size_t number);

// `number` counts from 1 at the top of the stack. Size and duration of the composition must be known; the
// source of a solid is added to its items. The layer's id is 0 when the file gives none, and its parent is
// left open: both need the other layers. Throws SceneError.
[[nodiscard]] host::Layer read_layer(const JsonDocument& document, const JsonValue& value, std::size_t number,
                                     host::Composition& composition);

}  // namespace zam::io
