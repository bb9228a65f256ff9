#include "effect/render/render.h"

#include <cstddef>
#include <cstring>

#include "effect/params/params.h"
#include "effect/render/light_records.h"
#include "effect/render/pixel_func.h"
#include "effect/render/render_data.h"
#include "effect/scene/camera.h"
#include "effect/scene/matrix.h"
#include "effect/scene/messages.h"
#include "effect/scene/reach.h"
#include "effect/scene/sequence_data.h"

namespace zam {
namespace {

constexpr double kSpotScale = 60.0;
constexpr double kFallbackZoom = 1000.0;  // comp px; when there is no camera to ask
constexpr char kNoCamera[] =
    "Could not find camera at current time.\nChoose Layer>New>Camera to create a camera.";

// Everything that the controls say, in the renderer's units.
struct Settings {
    _LightData points, spots;
    LightControls point_controls, spot_controls;
    LightFilters filters;
    A_long look = 0;
    double gamma = 1.0;
};

const char* PrefixText(NamePrefix choice) {
    switch (choice) {
        case NamePrefix::zam:
            return "Zam";
        case NamePrefix::front:
            return "Front";
        case NamePrefix::back:
            return "Back";
        case NamePrefix::anything:
            break;
    }
    return nullptr;
}

Settings ReadSettings(const PF_InData* in_data, PF_ParamDef* const params[]) {
    Settings s;
    s.points.model = ChoiceValue(params, kPointLightModel);
    s.points.softness = SliderValue(params, kSoftness) * kPercent;
    s.points.sourceRadius = SliderValue(params, kSourceRadius);
    s.point_controls.use_lights_intensity = BoxValue(params, kPointUseLightsIntensity);
    s.point_controls.intensity = SliderValue(params, kPointIntensity) * kPercent;
    s.point_controls.source_intensity = SliderValue(params, kSourceIntensity) * kPercent;
    s.point_controls.radius = SliderValue(params, kRadius);
    s.point_controls.individual = Individual{ChoiceValue(params, kIndividualRadius)};

    s.spots.model = ChoiceValue(params, kSpotLightModel);
    s.spots.startDistance = SliderValue(params, kStartDistance);
    s.spots.reachActive = BoxValue(params, kReachCompLayer);
    s.spots.reachBothSides = BoxValue(params, kReachBothSides);
    s.spot_controls.use_lights_intensity = BoxValue(params, kSpotUseLightsIntensity);
    s.spot_controls.intensity = SliderValue(params, kSpotIntensity) * kPercent;
    s.spot_controls.radius = SliderValue(params, kReach);
    s.spot_controls.individual = Individual{ChoiceValue(params, kIndividualReach)};

    const Switches switches{ChoiceValue(params, kUseLightsThatAre)};
    s.filters.time = in_data->current_time;
    s.filters.time_scale = in_data->time_scale;
    s.filters.use_on = switches != Switches::off;
    s.filters.use_off = switches != Switches::on;
    s.filters.prefix = PrefixText(NamePrefix{ChoiceValue(params, kNameStartsWith)});

    s.look = ChoiceValue(params, kLook);
    s.gamma = SliderValue(params, kGamma);
    return s;
}

// The reach layer's plane. False when there is none: the cones then end at their reach.
bool FindReachPlane(PF_InData* in_data, ReachPlane* plane) {
    AEGP_LayerIDVal layer_id = 0;
    {
        const LockedHandle sequence(in_data, in_data->sequence_data);
        layer_id = ReadReachLayerId(sequence.get());
    }
    int found = -1;
    GetControlLight(in_data, layer_id, in_data->current_time, in_data->time_scale, &found, &plane->point.x,
                    &plane->point.y, &plane->point.z, &plane->direction.x, &plane->direction.y,
                    &plane->direction.z);
    return found == 1;
}

// The camera, or what stands in for one that cannot be read.
void ReadCamera(PF_InData* in_data, PF_OutData* out_data, Projection* projection) {
    A_Matrix4 camera{};
    double zoom = 0.0;
    const A_Err err = GetCameraMatrix(in_data, &camera, &zoom, in_data->current_time, in_data->time_scale,
                                      in_data->width, in_data->height);
    if (!err) {
        InverseMatrix4(&camera, &projection->camera_from_world);
        projection->zoom = zoom;
        return;
    }
    ShowError(in_data, out_data, kNoCamera);
    IdentityMatrix4(&projection->camera_from_world);
    projection->zoom = kFallbackZoom;
}

// By hand where the host will not: it hands out its worlds dirty.
void Clear(PF_InData* in_data, PF_LayerDef* output) {
    const PF_Pixel transparent_black{};
    if (!in_data->utils->fill(in_data->effect_ref, &transparent_black, nullptr, output)) return;
    const bool deep = output->world_flags & PF_WorldFlag_DEEP;
    const auto width = static_cast<std::size_t>(output->width);
    auto* row = reinterpret_cast<char*>(output->data);
    for (A_long y = 0; y < output->height; ++y, row += output->rowbytes)
        std::memset(row, 0, width * (deep ? sizeof(PF_Pixel16) : sizeof(PF_Pixel)));
}

double Value(const PF_RationalScale& ratio) {
    return static_cast<double>(ratio.num) / static_cast<double>(ratio.den);
}

// From one pixel's ray to the next: neither none nor so far that no number holds its square, and not a not-a-number.
bool SpreadsRays(double step) {
    constexpr double kLeast = 1e-15, kMost = 1e15;
    return (step >= kLeast && step <= kMost) || (step <= -kLeast && step >= -kMost);
}

}  // namespace

PF_Err Render(PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[], PF_LayerDef* output) {
    Settings settings = ReadSettings(in_data, params);
    _LightData &points = settings.points, &spots = settings.spots;
    ReachPlane reach;
    if (spots.reachActive) spots.reachActive = FindReachPlane(in_data, &reach);

    Clear(in_data, output);

    // In this order, so that they are given back in the opposite one.
    HostArray<_VisLightStruct> spot_lights(in_data), point_lights(in_data);
    HostArray<_OptSpotData> opt_spots(in_data);
    HostArray<_OptPointData> opt_points(in_data);

    LightDescription description;
    if (PointModel{points.model} != PointModel::off) {
        ReadPointLights(in_data, settings.point_controls, settings.filters, &description, &point_lights,
                        &points);
    }
    if (SpotModel{spots.model} != SpotModel::off) {
        ReadSpotLights(in_data, settings.spot_controls, settings.filters, &description, &spot_lights, &spots);
    }

    Projection projection;
    ReadCamera(in_data, out_data, &projection);

    _RenderData frame;
    frame.inData = in_data;
    frame.width = projection.width = output->width;
    frame.height = projection.height = output->height;
    frame.deep = output->world_flags & PF_WorldFlag_DEEP;
    projection.downsample_x = Value(in_data->downsample_x);
    projection.downsample_y = Value(in_data->downsample_y);
    frame.aspectOverDownsampleX = Value(in_data->pixel_aspect_ratio) / projection.downsample_x;
    frame.invDownsampleY = 1.0 / projection.downsample_y;
    frame.invZoom = 1.0 / projection.zoom;
    // Not so where one of these divides by zero, either.
    if (SpreadsRays(frame.aspectOverDownsampleX * frame.invZoom) &&
        SpreadsRays(frame.invDownsampleY * frame.invZoom)) {
        ToCameraSpace(projection.camera_from_world, points, point_lights.get());
        ToCameraSpace(projection.camera_from_world, spots, spot_lights.get());
        KeepLightsInRange(&points, point_lights.get());
        KeepLightsInRange(&spots, spot_lights.get());
    } else {
        points.count = spots.count = 0;
    }

    const HostMaths maths(in_data);
    frame.softK = 100.0 * points.softness + 1.0;
    frame.softKSq = frame.softK * frame.softK;
    frame.softKRoot = 2.0 * maths.pow(frame.softK, 0.25);
    frame.spotScale = kSpotScale;
    frame.look = settings.look;
    frame.invGamma = 1.0 / settings.gamma;

    if (spots.count > 0) {
        if (opt_spots.Allocate(static_cast<std::size_t>(spots.count))) {
            PrepareSpots(maths, projection, kSpotScale, reach, &spots, spot_lights.get(), opt_spots.get());
        } else {
            spots.count = 0;
        }
    }
    if (points.count > 0) {
        if (opt_points.Allocate(static_cast<std::size_t>(points.count))) {
            PreparePoints(maths, frame.softKSq, points, point_lights.get(), opt_points.get());
        } else {
            points.count = 0;
        }
    }
    frame.pointData = &points;
    frame.spotData = &spots;
    frame.pointLights = point_lights.get();
    frame.spotLights = spot_lights.get();
    frame.optPoint = opt_points.get();
    frame.optSpot = opt_spots.get();

    // One pixel wide: PixelFunc walks each row itself, at either depth.
    const PF_Rect first_column{0, 0, 1, output->height};
    return in_data->utils->iterate(in_data, 0, output->height, nullptr, &first_column, &frame, PixelFunc,
                                   output);
}

}  // namespace zam
