#pragma once
// The point and spot lights of the effect's composition.
#include "effect/scene/export.h"
#include "hostapi/effect.h"

namespace zam {

inline constexpr double kRadiansPerDegree = 0.017453292519943295;
inline constexpr double kPercent = 0.01;

struct LightDescription {
    double pos[3] = {};            // world position, composition pixels
    double dir[3] = {};            // spots only: the light's z axis in world space, not normalised
    double color[3] = {};          // red, green, blue; 0 to 1
    double coneAngle = 0.0;        // spots only: the full angle, radians
    double coneFeather = 0.0;      // spots only: 0 to 1
    double intensity = 0.0;        // 1 = 100 %; 0 when a filter silences the light
    double shadowDarkness = 0.0;   // 1 = 100 %
    double shadowDiffusion = 0.0;  // pixels
};

// How many light layers of this type the composition has: AEGP_LightType_POINT or AEGP_LightType_SPOT. 0 when
// the composition cannot be reached, the count so far when the walk meets a host error.
ZAM_EXPORT int GetNoLights(PF_InData* in_data, int light_type);

// Describes the light of that kind with this place among its kind, counted from 0 at the top of the stack; an
// index beyond them leaves the record untouched. Filters set the intensity to 0: use_on and use_off say which
// video switches are wanted, `prefix` what the name must start with (null: anything), and a light must be
// there at the time (its out point included). Fields that cannot be read keep what the record held. The
// result is the first error of a call that the walk depends on. what_time / time_scale is effect time.
ZAM_EXPORT A_Err GetPointLight(PF_InData* in_data, A_long what_time, A_u_long time_scale,
                               LightDescription* light, int index, bool use_on, bool use_off,
                               const char* prefix);
ZAM_EXPORT A_Err GetSpotLight(PF_InData* in_data, A_long what_time, A_u_long time_scale,
                              LightDescription* light, int index, bool use_on, bool use_off,
                              const char* prefix);

// Queries that the renderer does not need; all values in single precision.

// The topmost light layer of exactly this name: light_type is -1 when there is none. 3 values each for the
// position and the colour, 9 for the x, y and z axes; the cone angle in radians and its feather as a
// fraction.
ZAM_EXPORT A_Err GetLightByName(PF_InData* in_data, A_long what_time, A_u_long time_scale, const char* name,
                                int* light_type, float* position, float* axes, float* color,
                                float* cone_angle, float* cone_feather);

// The same light's type and world position.
ZAM_EXPORT A_Err PGetLightPos(PF_InData* in_data, A_long what_time, A_u_long time_scale, const char* name,
                              int* light_type, float* x, float* y, float* z);

// 1 when some light's name agrees with `name` up to the end of the shorter one, else 0.
ZAM_EXPORT int PCheckLightExists(PF_InData* in_data, const char* name);

}  // namespace zam
