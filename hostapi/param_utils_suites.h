#pragma once
// "PF Param Utils Suite": control updates. PF_UpdateParamUI is slot 0 in every version.

#include "hostapi/params.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef struct PF_State {
    A_long reservedAL[4];
} PF_State;

// Wire versions 1 and 2.
typedef struct PF_ParamUtilsSuite1 {
    PF_Err (*PF_UpdateParamUI)(PF_ProgPtr, PF_ParamIndex, const PF_ParamDef*);
    PF_Err (*PF_GetCurrentStateObsolete)(PF_ProgPtr, PF_State*);
    PF_Err (*PF_HasParamChangedObsolete)(PF_ProgPtr, const PF_State*, PF_ParamIndex, PF_Boolean*);
    PF_Err (*PF_HaveInputsChangedOverTimeSpanObsolete)(PF_ProgPtr, const PF_State*, const A_Time*,
                                                       const A_Time*, PF_Boolean*);
    PF_Err (*PF_IsIdenticalCheckout)(PF_ProgPtr, PF_ParamIndex, A_long, A_long, A_u_long, A_long, A_long,
                                     A_u_long, PF_Boolean*);
    PF_Err (*PF_FindKeyframeTime)(PF_ProgPtr, PF_ParamIndex, A_long, A_u_long, PF_TimeDir, PF_Boolean*,
                                  PF_KeyIndex*, A_long*, A_u_long*);
    PF_Err (*PF_GetKeyframeCount)(PF_ProgPtr, PF_ParamIndex, PF_KeyIndex*);
    PF_Err (*PF_CheckoutKeyframe)(PF_ProgPtr, PF_ParamIndex, PF_KeyIndex, A_long*, A_u_long*, PF_ParamDef*);
    PF_Err (*PF_CheckinKeyframe)(PF_ProgPtr, PF_ParamDef*);
    PF_Err (*PF_KeyIndexToTime)(PF_ProgPtr, PF_ParamIndex, PF_KeyIndex, A_long*, A_u_long*);
} PF_ParamUtilsSuite1;

// Wire version 3.
typedef struct PF_ParamUtilsSuite3 {
    PF_Err (*PF_UpdateParamUI)(PF_ProgPtr, PF_ParamIndex, const PF_ParamDef*);
    PF_Err (*PF_GetCurrentState)(PF_ProgPtr, PF_ParamIndex, const A_Time*, const A_Time*, PF_State*);
    PF_Err (*PF_AreStatesIdentical)(PF_ProgPtr, const PF_State*, const PF_State*, A_Boolean*);
    PF_Err (*PF_IsIdenticalCheckout)(PF_ProgPtr, PF_ParamIndex, A_long, A_long, A_u_long, A_long, A_long,
                                     A_u_long, PF_Boolean*);
    PF_Err (*PF_FindKeyframeTime)(PF_ProgPtr, PF_ParamIndex, A_long, A_u_long, PF_TimeDir, PF_Boolean*,
                                  PF_KeyIndex*, A_long*, A_u_long*);
    PF_Err (*PF_GetKeyframeCount)(PF_ProgPtr, PF_ParamIndex, PF_KeyIndex*);
    PF_Err (*PF_CheckoutKeyframe)(PF_ProgPtr, PF_ParamIndex, PF_KeyIndex, A_long*, A_u_long*, PF_ParamDef*);
    PF_Err (*PF_CheckinKeyframe)(PF_ProgPtr, PF_ParamDef*);
    PF_Err (*PF_KeyIndexToTime)(PF_ProgPtr, PF_ParamIndex, PF_KeyIndex, A_long*, A_u_long*);
} PF_ParamUtilsSuite3;

#ifdef __cplusplus
}  // extern "C"
#endif
