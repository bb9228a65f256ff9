#pragma once
// From the effect to its scene: "AEGP PF Interface Suite" 1, "AEGP Light Suite" 1 and 2, "AEGP Camera
// Suite" 2.

#include "hostapi/scene_values.h"

#ifdef __cplusplus
extern "C" {
#endif

// "AEGP PF Interface Suite", wire version 1. AEGP_GetEffectCamera succeeds with a null layer when there is no
// camera.
typedef struct AEGP_PFInterfaceSuite1 {
    A_Err (*AEGP_GetEffectLayer)(PF_ProgPtr, AEGP_LayerH*);
    A_Err (*AEGP_GetNewEffectForEffect)(AEGP_PluginID, PF_ProgPtr, AEGP_EffectRefH*);
    A_Err (*AEGP_ConvertEffectToCompTime)(PF_ProgPtr, A_long, A_u_long, A_Time*);
    A_Err (*AEGP_GetEffectCamera)(PF_ProgPtr, const A_Time*, AEGP_LayerH*);
    A_Err (*AEGP_GetEffectCameraMatrix)(PF_ProgPtr, const A_Time*, A_Matrix4*, A_FpLong*, A_short*, A_short*);
} AEGP_PFInterfaceSuite1;

// "AEGP Light Suite", wire version 1.
typedef struct AEGP_LightSuite1 {
    A_Err (*AEGP_GetLightType)(AEGP_LayerH, AEGP_LightType*);
} AEGP_LightSuite1;

// "AEGP Light Suite", wire version 2.
typedef struct AEGP_LightSuite2 {
    A_Err (*AEGP_GetLightType)(AEGP_LayerH, AEGP_LightType*);
    A_Err (*AEGP_SetLightType)(AEGP_LayerH, AEGP_LightType);
} AEGP_LightSuite2;

// "AEGP Camera Suite", wire version 2.
typedef struct AEGP_CameraSuite2 {
    A_Err (*AEGP_GetCamera)(PR_RenderContextH, const A_Time*, AEGP_LayerH*);
    A_Err (*AEGP_GetCameraType)(AEGP_LayerH, AEGP_CameraType*);
    A_Err (*AEGP_GetDefaultCameraDistanceToImagePlane)(AEGP_CompH, A_FpLong*);
    A_Err (*AEGP_GetCameraFilmSize)(AEGP_LayerH, AEGP_FilmSizeUnits*, A_FpLong*);
    A_Err (*AEGP_SetCameraFilmSize)(AEGP_LayerH, AEGP_FilmSizeUnits, A_FpLong*);
} AEGP_CameraSuite2;

#ifdef __cplusplus
}  // extern "C"
#endif
