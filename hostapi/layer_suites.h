#pragma once
// "AEGP Layer Suite", wire versions 5 and 8. Version 8 puts AEGP_ConvertLayerToCompTime in at slot 34, so
// later calls sit elsewhere: always call by name in the version that was acquired. Layer index 0 is the top
// of the stack; names are buffers of AEGP_MAX_LAYER_NAME_SIZE bytes, and a null buffer means "not wanted".

#include "hostapi/scene_values.h"

#ifdef __cplusplus
extern "C" {
#endif

// Wire version 5.
typedef struct AEGP_LayerSuite1 {
    A_Err (*AEGP_GetCompNumLayers)(AEGP_CompH, A_long*);
    A_Err (*AEGP_GetCompLayerByIndex)(AEGP_CompH, A_long, AEGP_LayerH*);
    A_Err (*AEGP_GetActiveLayer)(AEGP_LayerH*);
    A_Err (*AEGP_GetLayerIndex)(AEGP_LayerH, A_long*);
    A_Err (*AEGP_GetLayerSourceItem)(AEGP_LayerH, AEGP_ItemH*);
    A_Err (*AEGP_GetLayerParentComp)(AEGP_LayerH, AEGP_CompH*);
    A_Err (*AEGP_GetLayerName)(AEGP_LayerH, A_char*, A_char*);
    A_Err (*AEGP_GetLayerQuality)(AEGP_LayerH, AEGP_LayerQuality*);
    A_Err (*AEGP_SetLayerQuality)(AEGP_LayerH, AEGP_LayerQuality);
    A_Err (*AEGP_GetLayerFlags)(AEGP_LayerH, AEGP_LayerFlags*);
    A_Err (*AEGP_SetLayerFlag)(AEGP_LayerH, AEGP_LayerFlags, A_Boolean);
    A_Err (*AEGP_IsLayerVideoReallyOn)(AEGP_LayerH, A_Boolean*);
    A_Err (*AEGP_IsLayerAudioReallyOn)(AEGP_LayerH, A_Boolean*);
    A_Err (*AEGP_GetLayerCurrentTime)(AEGP_LayerH, AEGP_LTimeMode, A_Time*);
    A_Err (*AEGP_GetLayerInPoint)(AEGP_LayerH, AEGP_LTimeMode, A_Time*);
    A_Err (*AEGP_GetLayerDuration)(AEGP_LayerH, AEGP_LTimeMode, A_Time*);
    A_Err (*AEGP_SetLayerInPointAndDuration)(AEGP_LayerH, AEGP_LTimeMode, const A_Time*, const A_Time*);
    A_Err (*AEGP_GetLayerOffset)(AEGP_LayerH, A_Time*);
    A_Err (*AEGP_SetLayerOffset)(AEGP_LayerH, const A_Time*);
    A_Err (*AEGP_GetLayerStretch)(AEGP_LayerH, A_Ratio*);
    A_Err (*AEGP_SetLayerStretch)(AEGP_LayerH, const A_Ratio*);
    A_Err (*AEGP_GetLayerTransferMode)(AEGP_LayerH, AEGP_LayerTransferMode*);
    A_Err (*AEGP_SetLayerTransferMode)(AEGP_LayerH, const AEGP_LayerTransferMode*);
    A_Err (*AEGP_IsAddLayerValid)(AEGP_ItemH, AEGP_CompH, A_Boolean*);
    A_Err (*AEGP_AddLayer)(AEGP_ItemH, AEGP_CompH, AEGP_LayerH*);
    A_Err (*AEGP_ReorderLayer)(AEGP_LayerH, A_long);
    A_Err (*AEGP_GetLayerMaskedBounds)(AEGP_LayerH, AEGP_LTimeMode, const A_Time*, A_FloatRect*);
    A_Err (*AEGP_GetLayerObjectType)(AEGP_LayerH, AEGP_ObjectType*);
    A_Err (*AEGP_IsLayer3D)(AEGP_LayerH, A_Boolean*);
    A_Err (*AEGP_IsLayer2D)(AEGP_LayerH, A_Boolean*);
    A_Err (*AEGP_IsVideoActive)(AEGP_LayerH, AEGP_LTimeMode, const A_Time*, A_Boolean*);
    A_Err (*AEGP_IsLayerUsedAsTrackMatte)(AEGP_LayerH, A_Boolean, A_Boolean*);
    A_Err (*AEGP_DoesLayerHaveTrackMatte)(AEGP_LayerH, A_Boolean*);
    A_Err (*AEGP_ConvertCompToLayerTime)(AEGP_LayerH, const A_Time*, A_Time*);
    A_Err (*AEGP_GetLayerDancingRandValue)(AEGP_LayerH, const A_Time*, A_long*);
    A_Err (*AEGP_GetLayerID)(AEGP_LayerH, AEGP_LayerIDVal*);
    A_Err (*AEGP_GetLayerToWorldXform)(AEGP_LayerH, const A_Time*, A_Matrix4*);
    A_Err (*AEGP_GetLayerToWorldXformFromView)(AEGP_LayerH, const A_Time*, const A_Time*, A_Matrix4*);
    A_Err (*AEGP_SetLayerName)(AEGP_LayerH, const A_char*);
} AEGP_LayerSuite1;

// Wire version 8.
typedef struct AEGP_LayerSuite3 {
    A_Err (*AEGP_GetCompNumLayers)(AEGP_CompH, A_long*);
    A_Err (*AEGP_GetCompLayerByIndex)(AEGP_CompH, A_long, AEGP_LayerH*);
    A_Err (*AEGP_GetActiveLayer)(AEGP_LayerH*);
    A_Err (*AEGP_GetLayerIndex)(AEGP_LayerH, A_long*);
    A_Err (*AEGP_GetLayerSourceItem)(AEGP_LayerH, AEGP_ItemH*);
    A_Err (*AEGP_GetLayerParentComp)(AEGP_LayerH, AEGP_CompH*);
    A_Err (*AEGP_GetLayerName)(AEGP_LayerH, A_char*, A_char*);
    A_Err (*AEGP_GetLayerQuality)(AEGP_LayerH, AEGP_LayerQuality*);
    A_Err (*AEGP_SetLayerQuality)(AEGP_LayerH, AEGP_LayerQuality);
    A_Err (*AEGP_GetLayerFlags)(AEGP_LayerH, AEGP_LayerFlags*);
    A_Err (*AEGP_SetLayerFlag)(AEGP_LayerH, AEGP_LayerFlags, A_Boolean);
    A_Err (*AEGP_IsLayerVideoReallyOn)(AEGP_LayerH, A_Boolean*);
    A_Err (*AEGP_IsLayerAudioReallyOn)(AEGP_LayerH, A_Boolean*);
    A_Err (*AEGP_GetLayerCurrentTime)(AEGP_LayerH, AEGP_LTimeMode, A_Time*);
    A_Err (*AEGP_GetLayerInPoint)(AEGP_LayerH, AEGP_LTimeMode, A_Time*);
    A_Err (*AEGP_GetLayerDuration)(AEGP_LayerH, AEGP_LTimeMode, A_Time*);
    A_Err (*AEGP_SetLayerInPointAndDuration)(AEGP_LayerH, AEGP_LTimeMode, const A_Time*, const A_Time*);
    A_Err (*AEGP_GetLayerOffset)(AEGP_LayerH, A_Time*);
    A_Err (*AEGP_SetLayerOffset)(AEGP_LayerH, const A_Time*);
    A_Err (*AEGP_GetLayerStretch)(AEGP_LayerH, A_Ratio*);
    A_Err (*AEGP_SetLayerStretch)(AEGP_LayerH, const A_Ratio*);
    A_Err (*AEGP_GetLayerTransferMode)(AEGP_LayerH, AEGP_LayerTransferMode*);
    A_Err (*AEGP_SetLayerTransferMode)(AEGP_LayerH, const AEGP_LayerTransferMode*);
    A_Err (*AEGP_IsAddLayerValid)(AEGP_ItemH, AEGP_CompH, A_Boolean*);
    A_Err (*AEGP_AddLayer)(AEGP_ItemH, AEGP_CompH, AEGP_LayerH*);
    A_Err (*AEGP_ReorderLayer)(AEGP_LayerH, A_long);
    A_Err (*AEGP_GetLayerMaskedBounds)(AEGP_LayerH, AEGP_LTimeMode, const A_Time*, A_FloatRect*);
    A_Err (*AEGP_GetLayerObjectType)(AEGP_LayerH, AEGP_ObjectType*);
    A_Err (*AEGP_IsLayer3D)(AEGP_LayerH, A_Boolean*);
    A_Err (*AEGP_IsLayer2D)(AEGP_LayerH, A_Boolean*);
    A_Err (*AEGP_IsVideoActive)(AEGP_LayerH, AEGP_LTimeMode, const A_Time*, A_Boolean*);
    A_Err (*AEGP_IsLayerUsedAsTrackMatte)(AEGP_LayerH, A_Boolean, A_Boolean*);
    A_Err (*AEGP_DoesLayerHaveTrackMatte)(AEGP_LayerH, A_Boolean*);
    A_Err (*AEGP_ConvertCompToLayerTime)(AEGP_LayerH, const A_Time*, A_Time*);
    A_Err (*AEGP_ConvertLayerToCompTime)(AEGP_LayerH, const A_Time*, A_Time*);
    A_Err (*AEGP_GetLayerDancingRandValue)(AEGP_LayerH, const A_Time*, A_long*);
    A_Err (*AEGP_GetLayerID)(AEGP_LayerH, AEGP_LayerIDVal*);
    A_Err (*AEGP_GetLayerToWorldXform)(AEGP_LayerH, const A_Time*, A_Matrix4*);
    A_Err (*AEGP_GetLayerToWorldXformFromView)(AEGP_LayerH, const A_Time*, const A_Time*, A_Matrix4*);
    A_Err (*AEGP_SetLayerName)(AEGP_LayerH, const A_char*);
    A_Err (*AEGP_GetLayerParent)(AEGP_LayerH, AEGP_LayerH*);
    A_Err (*AEGP_SetLayerParent)(AEGP_LayerH, AEGP_LayerH);
    A_Err (*AEGP_DeleteLayer)(AEGP_LayerH);
} AEGP_LayerSuite3;

#ifdef __cplusplus
}  // extern "C"
#endif
