#pragma once
// Numbers out of a glTF file's buffers.
#include <vector>

#include "io/gltf/container.h"

namespace zam::io::gltf {

// All components of the accessor that `user` (an index) names, one element after the other. `components` is
// what the use asks for: 1 scalars, 3 or 4 vectors. Normalized integers come as fractions. Throws
// SceneError.
[[nodiscard]] std::vector<double> read_accessor(const Container& file, const JsonValue& user, int components);

}  // namespace zam::io::gltf
