#pragma once
// A small composition and an instance inside a command, so that suites can be called as an effect calls them.
#include <gtest/gtest.h>

#include "host/runner/instance.h"
#include "host/suites/tables.h"

namespace zam::host {

class Bench : public ::testing::Test {
  protected:
    static constexpr LayerId kLight = 1, kCamera = 2, kWall = 3, kCarrier = 4;

    static Layer layer(LayerId id, LayerKind kind, const char* name) {
        Layer made;
        made.id = id;
        made.kind = kind;
        made.name = name;
        made.out_frame = 100;
        return made;
    }
    static Composition stage() {
        Composition composition;
        composition.frame_rate = {30000, 1001};
        composition.duration = 100;
        composition.items = {{8, "White Solid with quite a long name indeed", 320, 200}};
        composition.layers = {layer(kLight, LayerKind::light, "Front key"),
                              layer(kCamera, LayerKind::camera, "Camera"),
                              layer(kWall, LayerKind::solid, "A very long layer name that goes on"),
                              layer(kCarrier, LayerKind::solid, "")};
        composition.layers[1].camera.zoom = 500.0;
        composition.layers[3].source = 8;
        composition.layers[3].start_frame = 10;
        composition.layers[3].stretch = 200;
        composition.effect.layer = kCarrier;
        return composition;
    }

    Bench() { begin(PF_Cmd_UPDATE_PARAMS_UI, 20); }

    void begin(PF_Cmd command, double frame) {
        in.begin(command, frame);
        effect_ref = in.keys.make<PF_ProgPtr>(HandleKind::instance, 1);
        comp = in.comp_handle();
    }
    AEGP_LayerH handle(LayerId id) { return in.handle(*composition.find_layer(id)); }
    static A_Time frame_time(int frame) { return {frame * 1001, 30000}; }

    Composition composition = stage();
    Instance in{composition, {}};
    Instance::Scope scope{&in};
    PF_ProgPtr effect_ref = nullptr;
    AEGP_CompH comp = nullptr;
};

}  // namespace zam::host
