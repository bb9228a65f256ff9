#pragma once
// Compositions into our JSON format: the reader's opposite. What is read back renders the same frames.
#include <stdexcept>
#include <string>

#include "host/composition/composition.h"

namespace zam::io {

// A composition that has more in it than a file may hold; what() tells it in words.
class CompositionTooLarge : public std::runtime_error {
  public:
    using runtime_error::runtime_error;
};

// The whole file's text, in UTF-8. Notes and $schema are not part of a composition, so they are gone. A composition
// that did not come out of a reader may hold values that the format does not take; reading the text tells of them. Throws CompositionTooLarge, before much is written.
[[nodiscard]] std::string composition_text(const host::Composition& composition);

}  // namespace zam::io
