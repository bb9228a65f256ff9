#pragma once
// The reach light: a hidden, shy and locked spot light, parented to the layer that the user picked, whose
// world position and z axis are the plane where the spot lights' cones end. It lives in the composition and
// is found again by name and parent alone.
#include "effect/scene/export.h"
#include "hostapi/effect.h"
#include "hostapi/scene_values.h"

namespace zam {

// Creates or renames the reach light for the layer picked in the layer control at `param_index`, and puts
// that layer's id into *layer_id. No layer, a 2D layer and the effect's own layer change nothing. The result
// is the first failing host call's. Main thread only: it changes the project.
ZAM_EXPORT A_Err AddControlLightIfNeeded(PF_InData* in_data, int param_index, AEGP_LayerIDVal* layer_id);

// The same with a light named "base_name [layer]" instead of the effect's own name; the id is not reported.
ZAM_EXPORT A_Err PAddControlLightIfNeeded(PF_InData* in_data, int param_index, const char* base_name);

// The reach plane of the layer with this id: *found is 1, or -1 when there is no reach light (and the rest
// stays as it is). World position and direction, not normalised. deliberate: the values pass through single
// precision
ZAM_EXPORT A_Err GetControlLight(PF_InData* in_data, AEGP_LayerIDVal layer_id, A_long what_time,
                                 A_u_long time_scale, int* found, double* px, double* py, double* pz,
                                 double* nx, double* ny, double* nz);

// Queries that the effect itself does not need.

// Layer index of the topmost spot light whose name agrees with `base_name`; -1 when there is none.
ZAM_EXPORT A_Err PGetControlLightIDX(PF_InData* in_data, int* index, const char* base_name);

// World position, z axis and colour (red, green, blue) of the light at this layer index: 9 values.
ZAM_EXPORT A_Err PGetControlLightFromIDX(PF_InData* in_data, A_long what_time, A_u_long time_scale, int index,
                                         float* values);

// The layer-to-world matrix of the layer at this index.
ZAM_EXPORT A_Err PGetControlMatrixFromIDX(PF_InData* in_data, A_long what_time, A_u_long time_scale,
                                          int index, A_Matrix4* matrix);

// Size in pixels of the source of the layer picked in the layer control at `param_index`; left alone when no
// layer is picked or it has no source. GetLayerSize sets both to 0 first.
ZAM_EXPORT A_Err GetLayerInfo(PF_InData* in_data, int param_index, float* width, float* height);
ZAM_EXPORT A_Err GetLayerSize(PF_InData* in_data, int param_index, float* width, float* height);
ZAM_EXPORT A_Err GetLayerSizeAndType(PF_InData* in_data, int param_index, float* width, float* height);

}  // namespace zam
