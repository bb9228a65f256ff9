#pragma once
// A composition of one layer, and the plug-ins that are made to misbehave in it.
#include <string>

#include "host/runner/session.h"

namespace zam::host {

inline Composition small_stage() {
    Composition composition;
    composition.width = 7;
    composition.height = 5;
    composition.frame_rate = {30000, 1001};
    Layer layer;
    layer.id = 3;
    layer.start_frame = 2;
    layer.out_frame = 100;
    composition.layers = {layer};
    composition.effect.layer = 3;
    return composition;
}

inline std::string broken_plugin(const std::string& name) {
    return std::string(ZAM_BROKEN_PLUGINS) + "/" + name + ".so";
}

}  // namespace zam::host
