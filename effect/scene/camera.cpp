#include "effect/scene/camera.h"

#include "effect/scene/layers.h"

namespace zam {
namespace {

// 1 for an aspect that has no inverse: then nothing is seen through the view anyway.
double PixelAspect(const PF_InData* in_data) {
    const PF_RationalScale& aspect = in_data->pixel_aspect_ratio;
    if (aspect.num == 0 || aspect.den == 0) return 1.0;
    return static_cast<double>(aspect.num) / static_cast<double>(aspect.den);
}

// Composition time and active camera; a null camera when there is none.
A_Err GetCameraAt(const AEGP_SuiteHandler& suites, PF_InData* in_data, A_long what_time, A_u_long time_scale,
                  A_Time* comp_time, AEGP_LayerH* camera_layer) {
    *camera_layer = nullptr;
    if (const A_Err err = GetCompTime(suites, in_data, what_time, time_scale, comp_time)) return err;
    return suites.PFInterface1()->AEGP_GetEffectCamera(in_data->effect_ref, comp_time, camera_layer);
}

A_Err GetZoom(const AEGP_SuiteHandler& suites, AEGP_LayerH camera_layer, const A_Time& comp_time,
              double* zoom) {
    AEGP_StreamVal value{};
    const A_Err err = GetStreamAt(suites, camera_layer, AEGP_LayerStream_ZOOM, comp_time, &value);
    if (!err) *zoom = value.one_d;
    return err;
}

// The view of a composition without a camera. It is written whatever the host answers; the result is the
// first failing call's.
A_Err GetDefaultView(const AEGP_SuiteHandler& suites, PF_InData* in_data, double scale_x, double centre_x,
                     double centre_y, A_Matrix4* camera, double* zoom) {
    AEGP_LayerH layer = nullptr;
    AEGP_CompH comp = nullptr;
    double distance = 0.0;
    A_Err err = GetEffectLayerAndComp<WithLayer5>(suites, in_data, &layer, &comp);
    if (!err) err = suites.Camera2()->AEGP_GetDefaultCameraDistanceToImagePlane(comp, &distance);
    if (err) distance = 0.0;  // whatever was left there

    *camera = A_Matrix4{};
    camera->mat[0][0] = scale_x;
    camera->mat[1][1] = camera->mat[2][2] = camera->mat[3][3] = 1.0;
    camera->mat[3][0] = centre_x;
    camera->mat[3][1] = centre_y;
    camera->mat[3][2] = -distance;
    *zoom = distance;
    return err;
}

}  // namespace

ZAM_EXPORT A_Err GetCameraMatrix(PF_InData* in_data, A_Matrix4* camera, double* zoom, A_long what_time,
                                 A_u_long time_scale, A_long width, A_long height) {
    const AEGP_SuiteHandler suites(in_data->pica_basicP);
    A_Time comp_time;
    AEGP_LayerH layer;
    if (const A_Err err = GetCameraAt(suites, in_data, what_time, time_scale, &comp_time, &layer)) return err;
    if (!layer) {
        // deliberate: the inverse pixel aspect, here and nowhere else
        return GetDefaultView(suites, in_data, 1.0 / PixelAspect(in_data), width * 0.5, height * 0.5, camera,
                              zoom);
    }
    if (const A_Err err = suites.Layer5()->AEGP_GetLayerToWorldXform(layer, &comp_time, camera)) return err;
    return GetZoom(suites, layer, comp_time, zoom);
}

ZAM_EXPORT A_Err GetCameraMatrixAspect(PF_InData* in_data, A_Matrix4* camera, double* zoom, A_long what_time,
                                       A_u_long time_scale, A_long width, A_long height) {
    const AEGP_SuiteHandler suites(in_data->pica_basicP);
    A_Time comp_time;
    AEGP_LayerH layer;
    if (const A_Err err = GetCameraAt(suites, in_data, what_time, time_scale, &comp_time, &layer)) return err;
    if (!layer) return GetDefaultView(suites, in_data, 1.0, width * 0.5, height * 0.5, camera, zoom);
    if (const A_Err err =
            suites.Layer5()->AEGP_GetLayerToWorldXformFromView(layer, &comp_time, &comp_time, camera)) {
        return err;
    }
    return GetZoom(suites, layer, comp_time, zoom);
}

ZAM_EXPORT A_Err GetCameraMatrixNoAspect(PF_InData* in_data, A_Matrix4* camera, double* distance,
                                         A_long what_time, A_u_long time_scale, A_long width, A_long height) {
    const AEGP_SuiteHandler suites(in_data->pica_basicP);
    A_Time comp_time;
    AEGP_LayerH layer;
    if (const A_Err err = GetCameraAt(suites, in_data, what_time, time_scale, &comp_time, &layer)) return err;
    const double aspect = PixelAspect(in_data);
    if (!layer)
        return GetDefaultView(suites, in_data, 1.0, width * aspect * 0.5, height * 0.5, camera, distance);
    A_short plane_width = 0, plane_height = 0;
    const A_Err err = suites.PFInterface1()->AEGP_GetEffectCameraMatrix(
        in_data->effect_ref, &comp_time, camera, distance, &plane_width, &plane_height);
    if (err) return err;
    for (auto& row : camera->mat) row[0] *= aspect;
    return A_Err_NONE;
}

ZAM_EXPORT A_Err GetWorkArea(PF_InData* in_data, double* start, double* end) {
    const AEGP_SuiteHandler suites(in_data->pica_basicP);
    AEGP_LayerH layer = nullptr;
    AEGP_CompH comp = nullptr;
    A_Time comp_start{0, 1}, duration{0, 1};
    if (const A_Err err = GetEffectLayerAndComp<WithLayer5>(suites, in_data, &layer, &comp)) return err;
    if (const A_Err err = suites.Comp4()->AEGP_GetCompWorkAreaStart(comp, &comp_start)) return err;
    if (const A_Err err = suites.Comp4()->AEGP_GetCompWorkAreaDuration(comp, &duration)) return err;
    // deliberate: the values are added as they stand, whatever their scales
    const auto sum = static_cast<A_u_long>(comp_start.value) + static_cast<A_u_long>(duration.value);
    const A_Time comp_end{static_cast<A_long>(sum), duration.scale};

    A_Time layer_time{0, 1};
    if (const A_Err err = suites.Layer5()->AEGP_ConvertCompToLayerTime(layer, &comp_start, &layer_time))
        return err;
    *start = Seconds(layer_time);
    if (const A_Err err = suites.Layer5()->AEGP_ConvertCompToLayerTime(layer, &comp_end, &layer_time))
        return err;
    *end = Seconds(layer_time);
    return A_Err_NONE;
}

}  // namespace zam
