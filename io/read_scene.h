#pragma once
// Scene files of every kind.
#include <string>

#include "io/scene.h"
#include "io/scene_error.h"

namespace zam::io {

// By the file's name and first bytes.
[[nodiscard]] bool is_gltf(const std::string& file);

// Reads our composition format (.json) or glTF 2.0 (.gltf, .glb). Throws SceneError.
[[nodiscard]] Scene read_scene(const std::string& file, const GltfOptions& gltf);

}  // namespace zam::io
