#pragma once
// From the composition's lights to the records that the rows read.
#include "effect/render/choices.h"
#include "effect/render/host_maths.h"
#include "effect/scene/host_memory.h"
#include "effect/scene/lights.h"

namespace zam {

// What decides which lights are read and how strong and large they are: one kind's controls.
struct LightControls {
    bool use_lights_intensity = true;
    double intensity = 1.0;         // fraction
    double source_intensity = 0.0;  // fraction; points
    double radius = 0.0;            // comp px; the spots' reach
    Individual individual = Individual::none;
};

// The filters for GetPointLight and GetSpotLight.
struct LightFilters {
    A_long time = 0;
    A_u_long time_scale = 1;
    bool use_on = true, use_off = false;
    const char* prefix = nullptr;
};

// Reads the lights of one kind into `lights` and settings->count, in world space; drops those without
// intensity and those with a negative radius. Without lights of the kind the model becomes "Off"; without
// memory the count is 0. `description` is the frame's one record: what a light's reading leaves out stays
// from the light before.
void ReadPointLights(PF_InData* in_data, const LightControls& controls, const LightFilters& filters,
                     LightDescription* description, HostArray<_VisLightStruct>* lights, _LightData* settings);
void ReadSpotLights(PF_InData* in_data, const LightControls& controls, const LightFilters& filters,
                    LightDescription* description, HostArray<_VisLightStruct>* lights, _LightData* settings);

// How the world becomes a picture.
struct Projection {
    A_Matrix4 camera_from_world{};
    double zoom = 1.0;                              // comp px
    double downsample_x = 1.0, downsample_y = 1.0;  // 0.5 at half resolution
    A_long width = 0, height = 0;                   // of the output, pixels
};

// Where the picked layer is, in world space.
struct ReachPlane {
    Vec3 point, direction;
};

// From world space, in place.
void ToCameraSpace(const A_Matrix4& camera_from_world, const _LightData& settings, _VisLightStruct* lights);

// Leaves out the lights whose record holds a number that is none or beyond 1e15: so far all products of the rows'
// formulas keep clear of the ends of double precision, where targets would no longer agree.
void KeepLightsInRange(_LightData* settings, _VisLightStruct* lights);

// Fill one record for each light, which is in camera space; the reach plane goes there with the spots.
void PreparePoints(const HostMaths& maths, double softKSq, const _LightData& settings,
                   const _VisLightStruct* lights, _OptPointData* opt);
void PrepareSpots(const HostMaths& maths, const Projection& projection, double spotScale,
                  const ReachPlane& reach, _LightData* settings, const _VisLightStruct* lights,
                  _OptSpotData* opt);

}  // namespace zam
