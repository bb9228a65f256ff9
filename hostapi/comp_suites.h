#pragma once
// "AEGP Comp Suite" 4 and 9, and "AEGP Item Suite" 3.

#include "hostapi/scene_values.h"

#ifdef __cplusplus
extern "C" {
#endif

// "AEGP Comp Suite", wire version 4.
typedef struct AEGP_CompSuite1 {
    A_Err (*AEGP_GetCompFromItem)(AEGP_ItemH, AEGP_CompH*);
    A_Err (*AEGP_GetItemFromComp)(AEGP_CompH, AEGP_ItemH*);
    A_Err (*AEGP_GetCompDownsampleFactor)(AEGP_CompH, AEGP_DownsampleFactor*);
    A_Err (*AEGP_GetCompBGColor)(AEGP_CompH, AEGP_ColorVal*);
    A_Err (*AEGP_GetCompFlags)(AEGP_CompH, AEGP_CompFlags*);
    A_Err (*AEGP_GetCompFramerate)(AEGP_CompH, A_FpLong*);
    A_Err (*AEGP_GetCompShutterAnglePhase)(AEGP_CompH, A_Ratio*, A_Ratio*);
    A_Err (*AEGP_GetCompShutterFrameRange)(AEGP_CompH, const A_Time*, A_Time*, A_Time*);
    A_Err (*AEGP_GetCompWorkAreaStart)(AEGP_CompH, A_Time*);
    A_Err (*AEGP_GetCompWorkAreaDuration)(AEGP_CompH, A_Time*);
    A_Err (*AEGP_SetCompWorkAreaStartAndDuration)(AEGP_CompH, A_Time*, A_Time*);
    A_Err (*AEGP_CreateSolidInComp)(const A_char*, A_long, A_long, const AEGP_ColorVal*, AEGP_ItemH,
                                    AEGP_LayerH*);
    A_Err (*AEGP_CreateComp)(AEGP_ItemH, const A_char*, A_long, A_long, const A_Ratio*, const A_Time*,
                             const A_Ratio*, AEGP_ItemH*);
    A_Err (*AEGP_GetNewCollectionFromCompSelection)(AEGP_PluginID, AEGP_CompH, AEGP_CollectionH*);
    A_Err (*AEGP_SetSelection)(AEGP_CompH, AEGP_CollectionH);
    A_Err (*AEGP_SetCompDisplayStartTime)(AEGP_CompH, const A_Time*);
    A_Err (*AEGP_SetCompDuration)(AEGP_CompH, const A_Time*);
} AEGP_CompSuite1;

// "AEGP Comp Suite", wire version 9. AEGP_CreateLightInComp takes its centre point by value.
typedef struct AEGP_CompSuite4 {
    A_Err (*AEGP_GetCompFromItem)(AEGP_ItemH, AEGP_CompH*);
    A_Err (*AEGP_GetItemFromComp)(AEGP_CompH, AEGP_ItemH*);
    A_Err (*AEGP_GetCompDownsampleFactor)(AEGP_CompH, AEGP_DownsampleFactor*);
    A_Err (*AEGP_SetCompDownsampleFactor)(AEGP_CompH, const AEGP_DownsampleFactor*);
    A_Err (*AEGP_GetCompBGColor)(AEGP_CompH, AEGP_ColorVal*);
    A_Err (*AEGP_GetCompFlags)(AEGP_CompH, AEGP_CompFlags*);
    A_Err (*AEGP_GetCompFramerate)(AEGP_CompH, A_FpLong*);
    A_Err (*AEGP_SetCompFrameRate)(AEGP_CompH, const A_FpLong*);
    A_Err (*AEGP_GetCompShutterAnglePhase)(AEGP_CompH, A_Ratio*, A_Ratio*);
    A_Err (*AEGP_GetCompShutterFrameRange)(AEGP_CompH, const A_Time*, A_Time*, A_Time*);
    A_Err (*AEGP_GetCompWorkAreaStart)(AEGP_CompH, A_Time*);
    A_Err (*AEGP_GetCompWorkAreaDuration)(AEGP_CompH, A_Time*);
    A_Err (*AEGP_SetCompWorkAreaStartAndDuration)(AEGP_CompH, A_Time*, A_Time*);
    A_Err (*AEGP_CreateSolidInComp)(const A_char*, A_long, A_long, const AEGP_ColorVal*, AEGP_CompH,
                                    const A_Time*, AEGP_LayerH*);
    A_Err (*AEGP_CreateCameraInComp)(const A_char*, A_FloatPoint, AEGP_CompH, AEGP_LayerH*);
    A_Err (*AEGP_CreateLightInComp)(const A_char*, A_FloatPoint, AEGP_CompH, AEGP_LayerH*);
    A_Err (*AEGP_CreateComp)(AEGP_ItemH, const A_char*, A_long, A_long, const A_Ratio*, const A_Time*,
                             const A_Ratio*, AEGP_CompH*);
    A_Err (*AEGP_GetNewCollectionFromCompSelection)(AEGP_PluginID, AEGP_CompH, AEGP_Collection2H*);
    A_Err (*AEGP_SetSelection)(AEGP_CompH, AEGP_Collection2H);
    A_Err (*AEGP_GetCompDisplayStartTime)(AEGP_CompH, A_Time*);
    A_Err (*AEGP_SetCompDisplayStartTime)(AEGP_CompH, const A_Time*);
    A_Err (*AEGP_SetCompDuration)(AEGP_CompH, const A_Time*);
    A_Err (*AEGP_CreateNullInComp)(const A_char*, AEGP_CompH, const A_Time*, AEGP_LayerH*);
    A_Err (*AEGP_SetCompPixelAspectRatio)(AEGP_CompH, const A_Ratio*);
    A_Err (*AEGP_CreateTextLayerInComp)(AEGP_CompH, AEGP_LayerH*);
    A_Err (*AEGP_SetCompDimensions)(AEGP_CompH, A_long, A_long);
    A_Err (*AEGP_DuplicateComp)(AEGP_CompH, AEGP_CompH*);
    A_Err (*AEGP_GetCompFrameDuration)(AEGP_CompH, A_Time*);
} AEGP_CompSuite4;

// "AEGP Item Suite", wire version 3.
typedef struct AEGP_ItemSuite1 {
    A_Err (*AEGP_GetNextItem)(AEGP_ItemH, AEGP_ItemH*);
    A_Err (*AEGP_GetActiveItem)(AEGP_ItemH*);
    A_Err (*AEGP_IsItemSelected)(AEGP_ItemH, A_Boolean*);
    A_Err (*AEGP_SelectItem)(AEGP_ItemH, A_Boolean, A_Boolean);
    A_Err (*AEGP_GetItemType)(AEGP_ItemH, AEGP_ItemType*);
    A_Err (*AEGP_GetTypeName)(AEGP_ItemType, A_char*);
    A_Err (*AEGP_GetItemName)(AEGP_ItemH, A_char*);
    A_Err (*AEGP_GetItemID)(AEGP_ItemH, A_long*);
    A_Err (*AEGP_GetItemFlags)(AEGP_ItemH, AEGP_ItemFlags*);
    A_Err (*AEGP_SetItemUseProxy)(AEGP_ItemH, A_Boolean);
    A_Err (*AEGP_GetItemParentFolder)(AEGP_ItemH, AEGP_ItemH*);
    A_Err (*AEGP_GetItemDuration)(AEGP_ItemH, A_Time*);
    A_Err (*AEGP_GetItemCurrentTime)(AEGP_ItemH, A_Time*);
    A_Err (*AEGP_GetItemDimensions)(AEGP_ItemH, A_long*, A_long*);
    A_Err (*AEGP_GetItemPixelAspectRatio)(AEGP_ItemH, A_Ratio*);
    A_Err (*AEGP_DeleteItem)(AEGP_ItemH);
    A_Err (*AEGP_GetItemSolidColor)(AEGP_ItemH, AEGP_ColorVal*);
    A_Err (*AEGP_CreateNewFolder)(const A_char*, AEGP_ItemH, AEGP_ItemH*);
    A_Err (*AEGP_SetItemCurrentTime)(AEGP_ItemH, const A_Time*);
    A_Err (*AEGP_RenderNewItemSoundData)(AEGP_ItemH, const A_Time*, const A_Time*,
                                         const AEGP_SoundDataFormat*, AEGP_SoundDataH*);
} AEGP_ItemSuite1;

#ifdef __cplusplus
}  // extern "C"
#endif
