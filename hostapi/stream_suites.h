#pragma once
// Animated values and effects: "AEGP Stream Suite" 4, "AEGP Keyframe Suite" 1, "AEGP Effect Suite" 1. What a
// call with "New" in its name hands out is owned by the caller and wants the matching dispose.

#include "hostapi/params.h"
#include "hostapi/scene_values.h"

#ifdef __cplusplus
extern "C" {
#endif

// "AEGP Stream Suite", wire version 4.
typedef struct AEGP_StreamSuite1 {
    A_Err (*AEGP_IsStreamLegal)(AEGP_LayerH, AEGP_LayerStream, A_Boolean*);
    A_Err (*AEGP_CanVaryOverTime)(AEGP_StreamRefH, A_Boolean*);
    A_Err (*AEGP_GetNewLayerStream)(AEGP_PluginID, AEGP_LayerH, AEGP_LayerStream, AEGP_StreamRefH*);
    A_Err (*AEGP_GetEffectNumParamStreams)(AEGP_EffectRefH, A_long*);
    A_Err (*AEGP_GetNewEffectStreamByIndex)(AEGP_PluginID, AEGP_EffectRefH, PF_ParamIndex, AEGP_StreamRefH*);
    A_Err (*AEGP_GetNewMaskStream)(AEGP_PluginID, AEGP_MaskRefH, AEGP_MaskStream, AEGP_StreamRefH*);
    A_Err (*AEGP_DisposeStream)(AEGP_StreamRefH);
    A_Err (*AEGP_GetStreamName)(AEGP_StreamRefH, A_Boolean, A_char*);
    A_Err (*AEGP_GetStreamUnitsText)(AEGP_StreamRefH, A_Boolean, A_char*);
    A_Err (*AEGP_GetStreamProperties)(AEGP_StreamRefH, AEGP_StreamFlags*, A_FpLong*, A_FpLong*);
    A_Err (*AEGP_IsStreamTimevarying)(AEGP_StreamRefH, A_Boolean*);
    A_Err (*AEGP_GetStreamType)(AEGP_StreamRefH, AEGP_StreamType*);
    A_Err (*AEGP_GetNewStreamValue)(AEGP_PluginID, AEGP_StreamRefH, AEGP_LTimeMode, const A_Time*, A_Boolean,
                                    AEGP_StreamValue*);
    A_Err (*AEGP_DisposeStreamValue)(AEGP_StreamValue*);
    A_Err (*AEGP_SetStreamValue)(AEGP_PluginID, AEGP_StreamRefH, AEGP_StreamValue*);
    A_Err (*AEGP_GetLayerStreamValue)(AEGP_LayerH, AEGP_LayerStream, AEGP_LTimeMode, const A_Time*, A_Boolean,
                                      AEGP_StreamVal*, AEGP_StreamType*);
    A_Err (*AEGP_GetExpressionState)(AEGP_PluginID, AEGP_StreamRefH, A_Boolean*);
    A_Err (*AEGP_SetExpressionState)(AEGP_PluginID, AEGP_StreamRefH, A_Boolean);
    A_Err (*AEGP_GetExpression)(AEGP_PluginID, AEGP_StreamRefH, AEGP_MemHandle*);
    A_Err (*AEGP_SetExpression)(AEGP_PluginID, AEGP_StreamRefH, const A_char*);
} AEGP_StreamSuite1;

// "AEGP Keyframe Suite", wire version 1.
typedef struct AEGP_KeyframeSuite1 {
    A_Err (*AEGP_GetStreamNumKFs)(AEGP_StreamRefH, A_long*);
    A_Err (*AEGP_GetKeyframeTime)(AEGP_StreamRefH, AEGP_KeyframeIndex, AEGP_LTimeMode, A_Time*);
    A_Err (*AEGP_InsertKeyframe)(AEGP_StreamRefH, AEGP_LTimeMode, const A_Time*, AEGP_KeyframeIndex*);
    A_Err (*AEGP_DeleteKeyframe)(AEGP_StreamRefH, AEGP_KeyframeIndex);
    A_Err (*AEGP_GetNewKeyframeValue)(AEGP_PluginID, AEGP_StreamRefH, AEGP_KeyframeIndex, AEGP_StreamValue*);
    A_Err (*AEGP_SetKeyframeValue)(AEGP_StreamRefH, AEGP_KeyframeIndex, const AEGP_StreamValue*);
    A_Err (*AEGP_GetStreamValueDimensionality)(AEGP_StreamRefH, int16_t*);
    A_Err (*AEGP_GetStreamTemporalDimensionality)(AEGP_StreamRefH, int16_t*);
    A_Err (*AEGP_GetNewKeyframeSpatialTangents)(AEGP_PluginID, AEGP_StreamRefH, AEGP_KeyframeIndex,
                                                AEGP_StreamValue*, AEGP_StreamValue*);
    A_Err (*AEGP_SetKeyframeSpatialTangents)(AEGP_StreamRefH, AEGP_KeyframeIndex, const AEGP_StreamValue*,
                                             const AEGP_StreamValue*);
    A_Err (*AEGP_GetKeyframeTemporalEase)(AEGP_StreamRefH, AEGP_KeyframeIndex, A_long, AEGP_KeyframeEase*,
                                          AEGP_KeyframeEase*);
    A_Err (*AEGP_SetKeyframeTemporalEase)(AEGP_StreamRefH, AEGP_KeyframeIndex, A_long,
                                          const AEGP_KeyframeEase*, const AEGP_KeyframeEase*);
    A_Err (*AEGP_GetKeyframeFlags)(AEGP_StreamRefH, AEGP_KeyframeIndex, AEGP_KeyframeFlags*);
    A_Err (*AEGP_SetKeyframeFlag)(AEGP_StreamRefH, AEGP_KeyframeIndex, AEGP_KeyframeFlags, A_Boolean);
    A_Err (*AEGP_GetKeyframeInterpolation)(AEGP_StreamRefH, AEGP_KeyframeIndex,
                                           AEGP_KeyframeInterpolationType*, AEGP_KeyframeInterpolationType*);
    A_Err (*AEGP_SetKeyframeInterpolation)(AEGP_StreamRefH, AEGP_KeyframeIndex,
                                           AEGP_KeyframeInterpolationType, AEGP_KeyframeInterpolationType);
} AEGP_KeyframeSuite1;

// "AEGP Effect Suite", wire version 1.
typedef struct AEGP_EffectSuite1 {
    A_Err (*AEGP_GetLayerNumEffects)(AEGP_LayerH, A_long*);
    A_Err (*AEGP_GetLayerEffectByIndex)(AEGP_PluginID, AEGP_LayerH, AEGP_EffectIndex, AEGP_EffectRefH*);
    A_Err (*AEGP_GetInstalledKeyFromLayerEffect)(AEGP_EffectRefH, AEGP_InstalledEffectKey*);
    A_Err (*AEGP_GetEffectParamUnionByIndex)(AEGP_PluginID, AEGP_EffectRefH, PF_ParamIndex, PF_ParamType*,
                                             PF_ParamDefUnion*);
    A_Err (*AEGP_GetEffectFlags)(AEGP_EffectRefH, AEGP_EffectFlags*);
    A_Err (*AEGP_SetEffectFlags)(AEGP_EffectRefH, AEGP_EffectFlags, AEGP_EffectFlags);
    A_Err (*AEGP_ReorderEffect)(AEGP_EffectRefH, A_long);
    A_Err (*AEGP_EffectCallGeneric)(AEGP_PluginID, AEGP_EffectRefH, const A_Time*, void*);
    A_Err (*AEGP_DisposeEffect)(AEGP_EffectRefH);
    A_Err (*AEGP_ApplyEffect)(AEGP_PluginID, AEGP_LayerH, AEGP_InstalledEffectKey, AEGP_EffectRefH*);
    A_Err (*AEGP_DeleteLayerEffect)(AEGP_EffectRefH);
    A_Err (*AEGP_GetNumInstalledEffects)(A_long*);
    A_Err (*AEGP_GetNextInstalledEffect)(AEGP_InstalledEffectKey, AEGP_InstalledEffectKey*);
    A_Err (*AEGP_GetEffectName)(AEGP_InstalledEffectKey, A_char*);
    A_Err (*AEGP_GetEffectMatchName)(AEGP_InstalledEffectKey, A_char*);
    A_Err (*AEGP_GetEffectCategory)(AEGP_InstalledEffectKey, A_char*);
} AEGP_EffectSuite1;

#ifdef __cplusplus
}  // extern "C"
#endif
