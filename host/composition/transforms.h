#pragma once
// Where layers stand: the matrices that take a layer's own space to the composition's world space.
//
//     M = T(-anchor) S Rz Ry Rx (rotations)  Rz Ry Rx (orientation)  L  T(position)  M_parent
//
// L turns the z axis to the point of interest of cameras, spot lights and parallel lights. A layer that brings
// its matrix to the world has that one, whatever its transform and its parents say. Nothing here allocates: a
// frame may ask for thousands of matrices.
#include "host/composition/composition.h"
#include "host/composition/matrix.h"

namespace zam::host {

// The layer's own space to its parent's. Frames are composition frames.
[[nodiscard]] Matrix parent_from_layer(const Layer& layer, double frame);

// `find` gives the layer of an id or null. A parent that does not exist counts as none, and a circle of
// parents ends after as many steps as the composition has layers.
template <class Find>
[[nodiscard]] Matrix world_from_layer(const Layer& layer, double frame, std::size_t layers, Find&& find) {
    if (layer.world) return layer.world->at(frame);
    Matrix world = parent_from_layer(layer, frame);
    LayerId parent = layer.parent;
    for (std::size_t step = 0; parent != 0 && step < layers; ++step) {
        const Layer* above = find(parent);
        if (!above) break;
        if (above->world) return world * above->world->at(frame);
        world = world * parent_from_layer(*above, frame);
        parent = above->parent;
    }
    return world;
}

[[nodiscard]] inline Matrix world_from_layer(const Composition& composition, const Layer& layer,
                                             double frame) {
    return world_from_layer(layer, frame, composition.layers.size(),
                            [&](LayerId id) { return composition.find_layer(id); });
}

}  // namespace zam::host
