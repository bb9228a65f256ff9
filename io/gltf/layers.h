#pragma once
// Layers at the places of glTF nodes.
#include <string>

#include "host/composition/composition.h"
#include "io/gltf/light_motion.h"
#include "io/gltf/nodes.h"
#include "io/gltf/timeline.h"
#include "io/scene.h"

namespace zam::io::gltf {

class LayerMaker {
  public:
    // All three must outlive this.
    LayerMaker(const GltfOptions& options, const NodeTree& nodes, Timeline& timeline)
        : options_(options), nodes_(nodes), timeline_(timeline) {}

    // Intensities are in candela, or lux for parallel lights. `confined` is set when a value was held within its
    // bounds. Throws SceneError.
    [[nodiscard]] host::Layer light(std::size_t node, const LightDefinition& definition,
                                    const LightMotion& motion, bool* confined);
    // Perspective cameras only. `yfov` moves the lens, if anything does.
    [[nodiscard]] host::Layer camera(std::size_t node, const CameraDefinition& definition,
                                     const std::optional<Track>& yfov, bool* confined);
    // The node's name, else the definition's, else the kind with the number of the next layer.
    [[nodiscard]] std::string name_of(std::size_t node, const std::string& definition,
                                      const char* kind) const;

  private:
    [[nodiscard]] host::Layer place(std::size_t node, host::LayerKind kind, const std::string& name,
                                    bool* confined);
    void shine(std::size_t node, const LightMotion& motion, host::LightSettings* light, bool* confined);
    [[nodiscard]] Vec3 position(const Vec3& metres) const;

    const GltfOptions& options_;
    const NodeTree& nodes_;
    Timeline& timeline_;
    host::LayerId next_id_ = 1;
};

}  // namespace zam::io::gltf
