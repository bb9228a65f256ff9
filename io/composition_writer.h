#pragma once
// Compositions into our JSON format: the reader's opposite. What is read back renders the same frames.
#include <string>

#include "host/composition/composition.h"

namespace zam::io {

// The whole file's text, in UTF-8. Notes and $schema are not part of a composition, so they are gone. A composition
// that did not come out of a reader may hold values that the format does not take; reading the text tells of them.
[[nodiscard]] std::string composition_text(const host::Composition& composition);

}  // namespace zam::io
