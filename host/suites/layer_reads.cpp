// What a composition's layers are and where they stand.
#include <cmath>

#include "host/composition/queries.h"
#include "host/suites/conversions.h"
#include "host/suites/layer_calls.h"
#include "host/suites/serve.h"

namespace zam::host::layer_calls {
namespace {

bool is_3d(const Layer& layer) {
    return layer.three_d || layer.kind == LayerKind::camera || layer.kind == LayerKind::light;
}

[[gnu::noinline]] A_Err serve_comp_layer_by_index(AEGP_CompH comp, A_long index, AEGP_LayerH* layer) {
    return serve("Layer.AEGP_GetCompLayerByIndex", [&](Instance& in) {
        in.check(comp);
        const AEGP_LayerH found = in.layer_at(index);
        result(layer) = found;
    });
}

[[gnu::noinline]] A_Err serve_layer_object_type(AEGP_LayerH layer, AEGP_ObjectType* type) {
    return serve("Layer.AEGP_GetLayerObjectType", [&](Instance& in) {
        const AEGP_ObjectType found = in.facts(layer).object_type;
        result(type) = found;
    });
}

}  // namespace

A_Err get_comp_num_layers(AEGP_CompH comp, A_long* count) {
    return serve("Layer.AEGP_GetCompNumLayers", [&](Instance& in) {
        in.check(comp);
        result(count) = static_cast<A_long>(in.composition.layers.size());
    });
}

A_Err get_comp_layer_by_index(AEGP_CompH comp, A_long index, AEGP_LayerH* layer) {
    const LayerHandles& layers = Instance::layers_at_hand();
    if (!layers.at_hand(comp, index) || !layer) [[unlikely]]
        return serve_comp_layer_by_index(comp, index, layer);
    *layer = layers[index];
    return A_Err_NONE;
}

A_Err get_layer_index(AEGP_LayerH layer, A_long* index) {
    return serve("Layer.AEGP_GetLayerIndex", [&](Instance& in) { result(index) = in.facts(layer).place; });
}

A_Err get_layer_source_item(AEGP_LayerH layer, AEGP_ItemH* item) {
    return serve("Layer.AEGP_GetLayerSourceItem", [&](Instance& in) {
        const Item* source = in.composition.find_item(in.layer(layer).source);
        result(item) = source ? in.item_handle(source->id) : nullptr;
    });
}

A_Err get_layer_parent_comp(AEGP_LayerH layer, AEGP_CompH* comp) {
    return serve("Layer.AEGP_GetLayerParentComp", [&](Instance& in) {
        (void)in.facts(layer);
        result(comp) = in.comp_handle();
    });
}

A_Err get_layer_name(AEGP_LayerH layer, A_char* own, A_char* source) {
    return serve("Layer.AEGP_GetLayerName", [&](Instance& in) {
        const Layer& named = in.layer(layer);
        write_name(own, named.name);
        if (!source) return;
        const Item* item = in.composition.find_item(named.source);
        write_name(source, item ? item->name : std::string_view());
    });
}

A_Err get_layer_flags(AEGP_LayerH layer, AEGP_LayerFlags* flags) {
    return serve("Layer.AEGP_GetLayerFlags", [&](Instance& in) {
        const Layer& l = in.layer(layer);
        AEGP_LayerFlags all = AEGP_LayerFlag_EFFECTS_ACTIVE;
        if (l.video) all |= AEGP_LayerFlag_VIDEO_ACTIVE;
        if (l.locked) all |= AEGP_LayerFlag_LOCKED;
        if (l.shy) all |= AEGP_LayerFlag_SHY;
        if (is_3d(l)) all |= AEGP_LayerFlag_LAYER_IS_3D;
        if (l.transform.point_of_interest) all |= AEGP_LayerFlag_LOOK_AT_POI;
        if (l.solo) all |= AEGP_LayerFlag_SOLO;
        if (l.kind == LayerKind::null_object) all |= AEGP_LayerFlag_NULL_LAYER;
        result(flags) = all;
    });
}

A_Err is_video_really_on(AEGP_LayerH layer, A_Boolean* on) {
    return serve("Layer.AEGP_IsLayerVideoReallyOn",
                 [&](Instance& in) { result(on) = in.video_really_on(in.layer(layer)); });
}

A_Err get_layer_current_time(AEGP_LayerH layer, AEGP_LTimeMode mode, A_Time* time) {
    return serve("Layer.AEGP_GetLayerCurrentTime", [&](Instance& in) {
        const Layer& l = in.layer(layer);
        const bool own = mode == AEGP_LTimeMode_LayerTime;
        result(time) = in.time(own ? layer_frame(l, in.command_frame) : in.command_frame);
    });
}

A_Err get_layer_in_point(AEGP_LayerH layer, AEGP_LTimeMode mode, A_Time* time) {
    return serve("Layer.AEGP_GetLayerInPoint", [&](Instance& in) {
        const Layer& l = in.layer(layer);
        result(time) = in.time(mode == AEGP_LTimeMode_LayerTime ? 0.0 : l.in_frame);
    });
}

A_Err get_layer_duration(AEGP_LayerH layer, AEGP_LTimeMode mode, A_Time* time) {
    return serve("Layer.AEGP_GetLayerDuration", [&](Instance& in) {
        const Layer& l = in.layer(layer);
        const bool own = mode == AEGP_LTimeMode_LayerTime;
        result(time) = in.time(own ? std::abs(layer_frame(l, l.out_frame) - layer_frame(l, l.in_frame))
                                   : l.out_frame - l.in_frame);
    });
}

A_Err get_layer_offset(AEGP_LayerH layer, A_Time* time) {
    return serve("Layer.AEGP_GetLayerOffset",
                 [&](Instance& in) { result(time) = in.time(in.layer(layer).start_frame); });
}

A_Err get_layer_stretch(AEGP_LayerH layer, A_Ratio* stretch) {
    return serve("Layer.AEGP_GetLayerStretch", [&](Instance& in) {
        const double percent = std::clamp(in.layer(layer).stretch, -1e5, 1e5);
        result(stretch) = {static_cast<A_long>(std::lround(percent * 100.0)), 10000};
    });
}

A_Err get_layer_object_type(AEGP_LayerH layer, AEGP_ObjectType* type) {
    const LayerHandles& layers = Instance::layers_at_hand();
    if (!layers.at_hand(layer) || !type) [[unlikely]]
        return serve_layer_object_type(layer, type);
    *type = layers[layer].object_type;
    return A_Err_NONE;
}

A_Err is_layer_3d(AEGP_LayerH layer, A_Boolean* is) {
    return serve("Layer.AEGP_IsLayer3D", [&](Instance& in) { result(is) = is_3d(in.layer(layer)); });
}

A_Err is_layer_2d(AEGP_LayerH layer, A_Boolean* is) {
    return serve("Layer.AEGP_IsLayer2D", [&](Instance& in) { result(is) = !is_3d(in.layer(layer)); });
}

A_Err is_video_active(AEGP_LayerH layer, AEGP_LTimeMode mode, const A_Time* time, A_Boolean* active) {
    return serve("Layer.AEGP_IsVideoActive", [&](Instance& in) {
        const Layer& l = in.layer(layer);
        result(active) = in_range(l, in.frame(l, mode, time)) && in.video_really_on(l);
    });
}

A_Err comp_to_layer_time(AEGP_LayerH layer, const A_Time* comp_time, A_Time* layer_time) {
    return serve("Layer.AEGP_ConvertCompToLayerTime", [&](Instance& in) {
        result(layer_time) = in.time(layer_frame(in.layer(layer), in.frame(comp_time)));
    });
}

A_Err layer_to_comp_time(AEGP_LayerH layer, const A_Time* layer_time, A_Time* comp_time) {
    return serve("Layer.AEGP_ConvertLayerToCompTime", [&](Instance& in) {
        result(comp_time) = in.time(in.frame(in.layer(layer), AEGP_LTimeMode_LayerTime, layer_time));
    });
}

A_Err get_layer_id(AEGP_LayerH layer, AEGP_LayerIDVal* id) {
    return serve("Layer.AEGP_GetLayerID", [&](Instance& in) { result(id) = in.facts(layer).id; });
}

A_Err get_layer_to_world(AEGP_LayerH layer, const A_Time* comp_time, A_Matrix4* matrix) {
    return serve("Layer.AEGP_GetLayerToWorldXform", [&](Instance& in) {
        result(matrix) = interface_matrix(in.world_from_layer(in.layer(layer), in.frame(comp_time)));
    });
}

A_Err get_layer_to_world_from_view(AEGP_LayerH layer, const A_Time* view_time, const A_Time* comp_time,
                                   A_Matrix4* matrix) {
    return serve("Layer.AEGP_GetLayerToWorldXformFromView", [&](Instance& in) {
        (void)in.frame(view_time);  // no layer here turns to face the view
        result(matrix) = interface_matrix(in.world_from_layer(in.layer(layer), in.frame(comp_time)));
    });
}

A_Err get_layer_parent(AEGP_LayerH layer, AEGP_LayerH* parent) {
    return serve("Layer.AEGP_GetLayerParent", [&](Instance& in) {
        const LayerId id = in.layer(layer).parent;
        const Layer* found = id != 0 ? in.layers.find(in.composition, id) : nullptr;
        result(parent) = found ? in.handle(*found) : nullptr;
    });
}

}  // namespace zam::host::layer_calls
