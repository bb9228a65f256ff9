#pragma once
// The view through which the composition is seen.
#include "effect/scene/export.h"
#include "hostapi/effect.h"

namespace zam {

// All of these: `camera` is the camera-to-world transform, `zoom` the distance from the eye to the image
// plane in composition pixels; what_time / time_scale is effect time, width and height are the layer's size.
// The result is the first failing host call's; what was written so far stays. A composition without a camera
// is no error: the default view is given, looking along +z at the layer's centre.

// The one that the renderer uses: the active camera's world transform and zoom. In the default view, and only
// there, x is scaled by the inverse pixel aspect.
ZAM_EXPORT A_Err GetCameraMatrix(PF_InData* in_data, A_Matrix4* camera, double* zoom, A_long what_time,
                                 A_u_long time_scale, A_long width, A_long height);

// The world transform as seen from the view; no pixel aspect in the default view.
ZAM_EXPORT A_Err GetCameraMatrixAspect(PF_InData* in_data, A_Matrix4* camera, double* zoom, A_long what_time,
                                       A_u_long time_scale, A_long width, A_long height);

// The host's own camera matrix with x times the pixel aspect; the second output is the distance to the image
// plane.
ZAM_EXPORT A_Err GetCameraMatrixNoAspect(PF_InData* in_data, A_Matrix4* camera, double* distance,
                                         A_long what_time, A_u_long time_scale, A_long width, A_long height);

// The composition's work area in seconds of the effect layer's time.
ZAM_EXPORT A_Err GetWorkArea(PF_InData* in_data, double* start, double* end);

}  // namespace zam
