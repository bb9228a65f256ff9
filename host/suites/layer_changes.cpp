// Changes to the layers of a composition. Locked layers take them too: locks are for the user's hands.
#include "host/composition/queries.h"
#include "host/suites/layer_calls.h"
#include "host/suites/serve.h"

namespace zam::host::layer_calls {

A_Err set_layer_flag(AEGP_LayerH layer, AEGP_LayerFlags flag, A_Boolean on) {
    return serve("Layer.AEGP_SetLayerFlag", [&](Instance& in) {
        in.must_be_changeable();
        Layer& l = in.layer(layer);
        const bool value = on != 0;
        switch (flag) {
            case AEGP_LayerFlag_VIDEO_ACTIVE:
                l.video = value;
                break;
            case AEGP_LayerFlag_LOCKED:
                l.locked = value;
                break;
            case AEGP_LayerFlag_SHY:
                l.shy = value;
                break;
            case AEGP_LayerFlag_SOLO:
                l.solo = value;
                break;
            case AEGP_LayerFlag_LAYER_IS_3D:
                l.three_d = value;
                break;
            default:
                throw Refusal{A_Err_PARAMETER};  // several flags, or none that is kept here
        }
        in.changed();
    });
}

A_Err set_layer_in_point_and_duration(AEGP_LayerH layer, AEGP_LTimeMode mode, const A_Time* in_point,
                                      const A_Time* duration) {
    return serve("Layer.AEGP_SetLayerInPointAndDuration", [&](Instance& in) {
        in.must_be_changeable();
        Layer& l = in.layer(layer);
        const double first = in.frame(l, mode, in_point);
        const double length = in.frame(duration);
        const double stretched = comp_frame(l, length) - l.start_frame;
        l.in_frame = first;
        l.out_frame = first + (mode == AEGP_LTimeMode_LayerTime ? stretched : length);
    });
}

A_Err set_layer_offset(AEGP_LayerH layer, const A_Time* offset) {
    return serve("Layer.AEGP_SetLayerOffset", [&](Instance& in) {
        in.must_be_changeable();
        Layer& l = in.layer(layer);
        const double by = in.frame(offset) - l.start_frame;  // the layer moves as a whole
        l.start_frame += by;
        l.in_frame += by;
        l.out_frame += by;
    });
}

A_Err set_layer_name(AEGP_LayerH layer, const A_char* name) {
    return serve("Layer.AEGP_SetLayerName", [&](Instance& in) {
        in.must_be_changeable();
        in.layer(layer).name = read_name(name);
    });
}

// The child keeps its own numbers, so it jumps along with its new parent.
A_Err set_layer_parent(AEGP_LayerH layer, AEGP_LayerH parent) {
    return serve("Layer.AEGP_SetLayerParent", [&](Instance& in) {
        in.must_be_changeable();
        Layer& child = in.layer(layer);
        const LayerId above = parent ? in.layer(parent).id : 0;
        if (descends_from(in.composition, above, child.id)) throw Refusal{A_Err_PARAMETER};
        child.parent = above;
    });
}

A_Err delete_layer(AEGP_LayerH layer) {
    return serve("Layer.AEGP_DeleteLayer", [&](Instance& in) {
        in.must_be_changeable();
        const LayerId id = in.layer(layer).id;
        if (id == in.composition.effect.layer) throw Refusal{A_Err_PARAMETER};
        std::erase_if(in.composition.layers, [id](const Layer& l) { return l.id == id; });
        for (Layer& l : in.composition.layers) {
            if (l.parent == id) l.parent = 0;
        }
        in.changed();
    });
}

}  // namespace zam::host::layer_calls
