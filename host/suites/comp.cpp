// The composition: its times, and new lights and cameras in it.
#include "host/composition/queries.h"
#include "host/suites/serve.h"
#include "host/suites/tables.h"

namespace zam::host {
namespace {

A_Err get_comp_from_item(AEGP_ItemH item, AEGP_CompH* comp) {
    return serve("Comp.AEGP_GetCompFromItem", [&](Instance& in) {
        result(comp) = in.item(item) == Instance::kCompItem ? in.comp_handle() : nullptr;
    });
}

A_Err get_item_from_comp(AEGP_CompH comp, AEGP_ItemH* item) {
    return serve("Comp.AEGP_GetItemFromComp", [&](Instance& in) {
        in.check(comp);
        result(item) = in.item_handle(Instance::kCompItem);
    });
}

A_Err get_downsample_factor(AEGP_CompH comp, AEGP_DownsampleFactor* factor) {
    return serve("Comp.AEGP_GetCompDownsampleFactor", [&](Instance& in) {
        in.check(comp);
        result(factor) = {1, 1};
    });
}

A_Err get_background_color(AEGP_CompH comp, AEGP_ColorVal* color) {
    return serve("Comp.AEGP_GetCompBGColor", [&](Instance& in) {
        in.check(comp);
        result(color) = {1.0, 0.0, 0.0, 0.0};
    });
}

A_Err get_flags(AEGP_CompH comp, AEGP_CompFlags* flags) {
    return serve("Comp.AEGP_GetCompFlags", [&](Instance& in) {
        in.check(comp);
        result(flags) = 0;
    });
}

A_Err get_frame_rate(AEGP_CompH comp, A_FpLong* rate) {
    return serve("Comp.AEGP_GetCompFramerate", [&](Instance& in) {
        in.check(comp);
        result(rate) = in.composition.frame_rate.value();
    });
}

A_Err get_work_area_start(AEGP_CompH comp, A_Time* time) {
    return serve("Comp.AEGP_GetCompWorkAreaStart", [&](Instance& in) {
        in.check(comp);
        result(time) = in.time(in.composition.work_area_start);
    });
}

A_Err get_work_area_duration(AEGP_CompH comp, A_Time* time) {
    return serve("Comp.AEGP_GetCompWorkAreaDuration", [&](Instance& in) {
        in.check(comp);
        result(time) = in.time(in.composition.work_area_duration);
    });
}

A_Err get_display_start(AEGP_CompH comp, A_Time* time) {
    return serve("Comp.AEGP_GetCompDisplayStartTime", [&](Instance& in) {
        in.check(comp);
        result(time) = in.time(0.0);
    });
}

A_Err get_frame_duration(AEGP_CompH comp, A_Time* time) {
    return serve("Comp.AEGP_GetCompFrameDuration", [&](Instance& in) {
        in.check(comp);
        result(time) = in.time(1.0);
    });
}

// A new layer on top of the stack, which lasts as long as the composition but starts at the current time:
// whoever wants it elsewhere has to say so. It looks at `centre` from in front of it.
Layer& add_layer(Instance& in, LayerKind kind, const A_char* name, A_FloatPoint centre, double distance) {
    Composition& composition = in.composition;
    Layer layer;
    layer.id = composition.unused_layer_id();
    layer.kind = kind;
    layer.name = read_name(name);
    layer.start_frame = layer.in_frame = in.command_frame;
    layer.out_frame = layer.in_frame + composition.duration;
    layer.transform.position = Vec3{centre.x, centre.y, -distance};
    layer.transform.point_of_interest = Vec3{centre.x, centre.y, 0.0};
    composition.layers.insert(composition.layers.begin(), std::move(layer));
    in.changed();
    return composition.layers.front();
}

// A light with the settings of a fresh one; type and position are the host's choice.
A_Err create_light(const A_char* name, A_FloatPoint centre, AEGP_CompH comp, AEGP_LayerH* layer) {
    return serve("Comp.AEGP_CreateLightInComp", [&](Instance& in) {
        in.must_be_changeable();
        in.check(comp);
        AEGP_LayerH& to = result(layer);
        Layer& light = add_layer(in, LayerKind::light, name, centre, 500.0);
        light.light.type = in.options.new_light_type;
        to = in.handle(light);
    });
}

A_Err create_camera(const A_char* name, A_FloatPoint centre, AEGP_CompH comp, AEGP_LayerH* layer) {
    return serve("Comp.AEGP_CreateCameraInComp", [&](Instance& in) {
        in.must_be_changeable();
        in.check(comp);
        AEGP_LayerH& to = result(layer);
        const double zoom = default_camera_distance(in.composition);
        Layer& camera = add_layer(in, LayerKind::camera, name, centre, zoom);
        camera.camera.zoom = zoom;
        to = in.handle(camera);
    });
}

}  // namespace

const AEGP_CompSuite1 kCompSuite4 = {
    .AEGP_GetCompFromItem = get_comp_from_item,
    .AEGP_GetItemFromComp = get_item_from_comp,
    .AEGP_GetCompDownsampleFactor = get_downsample_factor,
    .AEGP_GetCompBGColor = get_background_color,
    .AEGP_GetCompFlags = get_flags,
    .AEGP_GetCompFramerate = get_frame_rate,
    .AEGP_GetCompShutterAnglePhase = unserved<"Comp.AEGP_GetCompShutterAnglePhase">,
    .AEGP_GetCompShutterFrameRange = unserved<"Comp.AEGP_GetCompShutterFrameRange">,
    .AEGP_GetCompWorkAreaStart = get_work_area_start,
    .AEGP_GetCompWorkAreaDuration = get_work_area_duration,
    .AEGP_SetCompWorkAreaStartAndDuration = unserved<"Comp.AEGP_SetCompWorkAreaStartAndDuration">,
    .AEGP_CreateSolidInComp = unserved<"Comp.AEGP_CreateSolidInComp">,
    .AEGP_CreateComp = unserved<"Comp.AEGP_CreateComp">,
    .AEGP_GetNewCollectionFromCompSelection = unserved<"Comp.AEGP_GetNewCollectionFromCompSelection">,
    .AEGP_SetSelection = unserved<"Comp.AEGP_SetSelection">,
    .AEGP_SetCompDisplayStartTime = unserved<"Comp.AEGP_SetCompDisplayStartTime">,
    .AEGP_SetCompDuration = unserved<"Comp.AEGP_SetCompDuration">,
};

const AEGP_CompSuite4 kCompSuite9 = {
    .AEGP_GetCompFromItem = get_comp_from_item,
    .AEGP_GetItemFromComp = get_item_from_comp,
    .AEGP_GetCompDownsampleFactor = get_downsample_factor,
    .AEGP_SetCompDownsampleFactor = unserved<"Comp.AEGP_SetCompDownsampleFactor">,
    .AEGP_GetCompBGColor = get_background_color,
    .AEGP_GetCompFlags = get_flags,
    .AEGP_GetCompFramerate = get_frame_rate,
    .AEGP_SetCompFrameRate = unserved<"Comp.AEGP_SetCompFrameRate">,
    .AEGP_GetCompShutterAnglePhase = unserved<"Comp.AEGP_GetCompShutterAnglePhase">,
    .AEGP_GetCompShutterFrameRange = unserved<"Comp.AEGP_GetCompShutterFrameRange">,
    .AEGP_GetCompWorkAreaStart = get_work_area_start,
    .AEGP_GetCompWorkAreaDuration = get_work_area_duration,
    .AEGP_SetCompWorkAreaStartAndDuration = unserved<"Comp.AEGP_SetCompWorkAreaStartAndDuration">,
    .AEGP_CreateSolidInComp = unserved<"Comp.AEGP_CreateSolidInComp">,
    .AEGP_CreateCameraInComp = create_camera,
    .AEGP_CreateLightInComp = create_light,
    .AEGP_CreateComp = unserved<"Comp.AEGP_CreateComp">,
    .AEGP_GetNewCollectionFromCompSelection = unserved<"Comp.AEGP_GetNewCollectionFromCompSelection">,
    .AEGP_SetSelection = unserved<"Comp.AEGP_SetSelection">,
    .AEGP_GetCompDisplayStartTime = get_display_start,
    .AEGP_SetCompDisplayStartTime = unserved<"Comp.AEGP_SetCompDisplayStartTime">,
    .AEGP_SetCompDuration = unserved<"Comp.AEGP_SetCompDuration">,
    .AEGP_CreateNullInComp = unserved<"Comp.AEGP_CreateNullInComp">,
    .AEGP_SetCompPixelAspectRatio = unserved<"Comp.AEGP_SetCompPixelAspectRatio">,
    .AEGP_CreateTextLayerInComp = unserved<"Comp.AEGP_CreateTextLayerInComp">,
    .AEGP_SetCompDimensions = unserved<"Comp.AEGP_SetCompDimensions">,
    .AEGP_DuplicateComp = unserved<"Comp.AEGP_DuplicateComp">,
    .AEGP_GetCompFrameDuration = get_frame_duration,
};

}  // namespace zam::host
