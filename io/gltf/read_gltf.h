#pragma once
// glTF 2.0 with KHR_lights_punctual as a composition. docs/gltf.md describes the mapping.
#include <string>

#include "io/scene.h"
#include "io/scene_error.h"

namespace zam::io::gltf {

// Throws SceneError.
[[nodiscard]] Scene read_gltf(const std::string& file, const GltfOptions& options);

}  // namespace zam::io::gltf
