#pragma once
// Compositions and sessions for the tests that drive the plug-in file through the interface.
#include <gtest/gtest.h>

#include <string>

#include "host/composition/composition.h"
#include "host/runner/session.h"
#include "io/effect_layer.h"

namespace zam::test {

using namespace zam::host;  // NOLINT: the tests speak of nothing else

inline const Plugin& zam_plugin() {
    static const Plugin plugin(ZAM_PLUGIN_FILE);
    return plugin;
}

// What an exported function of that name answers.
template <class... Arguments>
int call(const char* name, Arguments... arguments) {
    return reinterpret_cast<int (*)(Arguments...)>(zam_plugin().symbol(name))(arguments...);
}

// A composition with the effect on a solid of its size at the bottom of the stack; lights are added above it.
inline Composition make_composition(int width = 64, int height = 36) {
    Composition comp;
    comp.width = width;
    comp.height = height;
    comp.duration = comp.work_area_duration = 100;
    io::add_effect_layer(comp);
    return comp;
}

// On top of the stack.
inline Layer& add_layer(Composition& comp, LayerKind kind, const std::string& name, Vec3 position) {
    Layer layer;
    layer.id = comp.unused_layer_id();
    layer.kind = kind;
    layer.name = name;
    layer.out_frame = 100;
    layer.transform.position = position;
    comp.layers.insert(comp.layers.begin(), layer);
    return comp.layers.front();
}

inline Layer& add_point(Composition& comp, Vec3 position, const std::string& name = "Point") {
    Layer& layer = add_layer(comp, LayerKind::light, name, position);
    layer.light.type = LightType::point;
    return layer;
}

inline Layer& add_spot(Composition& comp, Vec3 position, Vec3 aim, const std::string& name = "Spot") {
    Layer& layer = add_layer(comp, LayerKind::light, name, position);
    layer.light.type = LightType::spot;
    layer.transform.point_of_interest = aim;
    return layer;
}

inline Layer& add_camera(Composition& comp, Vec3 position, Vec3 aim, double zoom) {
    Layer& layer = add_layer(comp, LayerKind::camera, "Camera", position);
    layer.transform.point_of_interest = aim;
    layer.camera.zoom = zoom;
    return layer;
}

// A running effect on a composition of its own.
struct Running {
    Composition comp;
    Session session;

    explicit Running(Composition composition, SessionOptions options = {})
        : comp(std::move(composition)), session(zam_plugin(), comp, std::move(options)) {
        session.start();
    }
    int index_of(const std::string& control) const { return find_control(session.controls(), control).index; }
    void set(const std::string& control, double value) { session.set_control(index_of(control), value); }
    Frame render(double frame = 0.0, RenderSettings settings = {}) { return session.render(frame, settings); }
};

inline bool is_black(const Frame& frame) {
    for (const auto code : frame.argb) {
        if (code != 0) return false;
    }
    return true;
}

}  // namespace zam::test
