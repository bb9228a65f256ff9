#pragma once
// Callbacks that the host hands to an effect: by value in PF_InData (PF_InteractCallbacks) or behind its
// `utils` pointer (PF_UtilCallbacks, which embeds the maths and string callbacks).

#include "hostapi/params.h"

#ifdef __cplusplus
extern "C" {
#endif

#ifdef __cplusplus
struct PF_InData;
#else
typedef struct PF_InData PF_InData;
#endif

typedef struct PF_CompositeMode {
    PF_TransferMode xfer;
    A_long rand_seed;
    A_u_char opacity;
    PF_Boolean rgb_only;
    A_u_short opacitySu;
} PF_CompositeMode;

typedef struct PF_FloatMatrix {
    PF_FpLong mat[3][3];
} PF_FloatMatrix;

typedef struct PF_MaskWorld {
    PF_EffectWorld mask;
    PF_Point offset;
    PF_MaskFlags what_is_mask;
} PF_MaskWorld;

typedef struct PF_SampPB {
    PF_Fixed x_radius;
    PF_Fixed y_radius;
    PF_Fixed area;
    PF_EffectWorld* src;
    PF_SampleEdgeBehav samp_behave;
    A_long allow_asynch;
    A_long motion_blur;
    PF_CompositeMode comp_mode;
    PF_PixelPtr mask0;
    A_u_char* fcm_table;
    A_u_char* fcd_table;
    A_long reserved[8];
} PF_SampPB;

typedef struct PF_CustomUIInfo {
    A_long reserved;
    PF_CustomEventFlags events;
    A_long comp_ui_width;
    A_long comp_ui_height;
    PF_UIAlignment comp_ui_alignment;
    A_long layer_ui_width;
    A_long layer_ui_height;
    PF_UIAlignment layer_ui_alignment;
    A_long preview_ui_width;
    A_long preview_ui_height;
    PF_UIAlignment preview_ui_alignment;
} PF_CustomUIInfo;

typedef PF_Err (*PF_IteratePixel8Func)(void*, A_long, A_long, PF_Pixel*, PF_Pixel*);
typedef PF_Err (*PF_IteratePixel16Func)(void*, A_long, A_long, PF_Pixel16*, PF_Pixel16*);

// add_param copies the definition and its strings; index -1 appends.
typedef struct PF_InteractCallbacks {
    PF_Err (*checkout_param)(PF_ProgPtr, PF_ParamIndex, A_long, A_long, A_u_long, PF_ParamDef*);
    PF_Err (*checkin_param)(PF_ProgPtr, PF_ParamDef*);
    PF_Err (*add_param)(PF_ProgPtr, PF_ParamIndex, PF_ParamDefPtr);
    PF_Err (*abort)(PF_ProgPtr);
    PF_Err (*progress)(PF_ProgPtr, A_long, A_long);
    PF_Err (*register_ui)(PF_ProgPtr, PF_CustomUIInfo*);
    PF_Err (*checkout_layer_audio)(PF_ProgPtr, PF_ParamIndex, A_long, A_long, A_u_long, PF_UFixed, A_long,
                                   A_long, A_long, PF_LayerAudio*);
    PF_Err (*checkin_layer_audio)(PF_ProgPtr, PF_LayerAudio);
    PF_Err (*get_audio_data)(PF_ProgPtr, PF_LayerAudio, PF_SndSamplePtr*, A_long*, PF_UFixed*, A_long*,
                             A_long*, A_long*);
    void* reserved_str[3];
    void* reserved[10];
} PF_InteractCallbacks;

// sprintf really is variadic: its arguments travel differently on some platforms.
typedef struct PF_ANSICallbacks {
    A_FpLong (*atan)(A_FpLong);
    A_FpLong (*atan2)(A_FpLong, A_FpLong);
    A_FpLong (*ceil)(A_FpLong);
    A_FpLong (*cos)(A_FpLong);
    A_FpLong (*exp)(A_FpLong);
    A_FpLong (*fabs)(A_FpLong);
    A_FpLong (*floor)(A_FpLong);
    A_FpLong (*fmod)(A_FpLong, A_FpLong);
    A_FpLong (*hypot)(A_FpLong, A_FpLong);
    A_FpLong (*log)(A_FpLong);
    A_FpLong (*log10)(A_FpLong);
    A_FpLong (*pow)(A_FpLong, A_FpLong);
    A_FpLong (*sin)(A_FpLong);
    A_FpLong (*sqrt)(A_FpLong);
    A_FpLong (*tan)(A_FpLong);
    int32_t (*sprintf)(A_char*, const A_char*, ...);
    A_char* (*strcpy)(A_char*, const A_char*);
    A_FpLong (*asin)(A_FpLong);
    A_FpLong (*acos)(A_FpLong);
    A_long unused_longA[1];
} PF_ANSICallbacks;

typedef struct PF_ColorCallbacks {
    PF_Err (*RGBtoHLS)(PF_ProgPtr, PF_Pixel*, PF_Fixed*);
    PF_Err (*HLStoRGB)(PF_ProgPtr, PF_Fixed*, PF_Pixel*);
    PF_Err (*RGBtoYIQ)(PF_ProgPtr, PF_Pixel*, PF_Fixed*);
    PF_Err (*YIQtoRGB)(PF_ProgPtr, PF_Fixed*, PF_Pixel*);
    PF_Err (*Luminance)(PF_ProgPtr, PF_Pixel*, A_long*);
    PF_Err (*Hue)(PF_ProgPtr, PF_Pixel*, A_long*);
    PF_Err (*Lightness)(PF_ProgPtr, PF_Pixel*, A_long*);
    PF_Err (*Saturation)(PF_ProgPtr, PF_Pixel*, A_long*);
} PF_ColorCallbacks;

// fill: a null rectangle is the whole world. iterate: calls the function once for every pixel of the area,
// from several threads and in no promised order; the first non-zero result ends the pass and is returned.
// Handle callbacks may be null in hosts other than After Effects.
typedef struct PF_UtilCallbacks {
    PF_Err (*begin_sampling)(PF_ProgPtr, PF_Quality, PF_ModeFlags, PF_SampPB*);
    PF_Err (*subpixel_sample)(PF_ProgPtr, PF_Fixed, PF_Fixed, const PF_SampPB*, PF_Pixel*);
    PF_Err (*area_sample)(PF_ProgPtr, PF_Fixed, PF_Fixed, const PF_SampPB*, PF_Pixel*);
    void* get_batch_func_is_deprecated;
    PF_Err (*end_sampling)(PF_ProgPtr, PF_Quality, PF_ModeFlags, PF_SampPB*);
    PF_Err (*composite_rect)(PF_ProgPtr, PF_Rect*, A_long, PF_EffectWorld*, A_long, A_long, PF_Field,
                             PF_XferMode, PF_EffectWorld*);
    PF_Err (*blend)(PF_ProgPtr, const PF_EffectWorld*, const PF_EffectWorld*, PF_Fixed, PF_EffectWorld*);
    PF_Err (*convolve)(PF_ProgPtr, PF_EffectWorld*, const PF_Rect*, PF_KernelFlags, A_long, void*, void*,
                       void*, void*, PF_EffectWorld*);
    PF_Err (*copy)(PF_ProgPtr, PF_EffectWorld*, PF_EffectWorld*, PF_Rect*, PF_Rect*);
    PF_Err (*fill)(PF_ProgPtr, const PF_Pixel*, const PF_Rect*, PF_EffectWorld*);
    PF_Err (*gaussian_kernel)(PF_ProgPtr, A_FpLong, PF_KernelFlags, A_FpLong, A_long*, void*);
    PF_Err (*iterate)(PF_InData*, A_long, A_long, PF_EffectWorld*, const PF_Rect*, void*,
                      PF_IteratePixel8Func, PF_EffectWorld*);
    PF_Err (*premultiply)(PF_ProgPtr, A_long, PF_EffectWorld*);
    PF_Err (*premultiply_color)(PF_ProgPtr, PF_EffectWorld*, const PF_Pixel*, A_long, PF_EffectWorld*);
    PF_Err (*new_world)(PF_ProgPtr, A_long, A_long, PF_NewWorldFlags, PF_EffectWorld*);
    PF_Err (*dispose_world)(PF_ProgPtr, PF_EffectWorld*);
    PF_Err (*iterate_origin)(PF_InData*, A_long, A_long, PF_EffectWorld*, const PF_Rect*, const PF_Point*,
                             void*, PF_IteratePixel8Func, PF_EffectWorld*);
    PF_Err (*iterate_lut)(PF_InData*, A_long, A_long, PF_EffectWorld*, const PF_Rect*, A_u_char*, A_u_char*,
                          A_u_char*, A_u_char*, PF_EffectWorld*);
    PF_Err (*transfer_rect)(PF_ProgPtr, PF_Quality, PF_ModeFlags, PF_Field, const PF_Rect*,
                            const PF_EffectWorld*, const PF_CompositeMode*, const PF_MaskWorld*, A_long,
                            A_long, PF_EffectWorld*);
    PF_Err (*transform_world)(PF_ProgPtr, PF_Quality, PF_ModeFlags, PF_Field, const PF_EffectWorld*,
                              const PF_CompositeMode*, const PF_MaskWorld*, const PF_FloatMatrix*, A_long,
                              PF_Boolean, const PF_Rect*, PF_EffectWorld*);
    PF_Handle (*host_new_handle)(A_u_longlong);
    void* (*host_lock_handle)(PF_Handle);
    void (*host_unlock_handle)(PF_Handle);
    void (*host_dispose_handle)(PF_Handle);
    PF_Err (*get_callback_addr)(PF_ProgPtr, PF_Quality, PF_ModeFlags, PF_CallbackID, PF_CallbackFunc*);
    PF_Err (*app)(PF_ProgPtr, A_long, ...);
    PF_ANSICallbacks ansi;
    PF_ColorCallbacks colorCB;
    PF_Err (*get_platform_data)(PF_ProgPtr, PF_PlatDataID, void*);
    A_u_longlong (*host_get_handle_size)(PF_Handle);
    PF_Err (*iterate_origin_non_clip_src)(PF_InData*, A_long, A_long, PF_EffectWorld*, const PF_Rect*,
                                          const PF_Point*, void*, PF_IteratePixel8Func, PF_EffectWorld*);
    PF_Err (*iterate_generic)(A_long, void*, PF_Err (*)(void*, A_long, A_long, A_long));
    PF_Err (*host_resize_handle)(A_u_longlong, PF_Handle*);
    PF_Err (*subpixel_sample16)(PF_ProgPtr, PF_Fixed, PF_Fixed, const PF_SampPB*, PF_Pixel16*);
    PF_Err (*area_sample16)(PF_ProgPtr, PF_Fixed, PF_Fixed, const PF_SampPB*, PF_Pixel16*);
    PF_Err (*fill16)(PF_ProgPtr, const PF_Pixel16*, const PF_Rect*, PF_EffectWorld*);
    PF_Err (*premultiply_color16)(PF_ProgPtr, PF_EffectWorld*, const PF_Pixel16*, A_long, PF_EffectWorld*);
    PF_Err (*iterate16)(PF_InData*, A_long, A_long, PF_EffectWorld*, const PF_Rect*, void*,
                        PF_IteratePixel16Func, PF_EffectWorld*);
    PF_Err (*iterate_origin16)(PF_InData*, A_long, A_long, PF_EffectWorld*, const PF_Rect*, const PF_Point*,
                               void*, PF_IteratePixel16Func, PF_EffectWorld*);
    PF_Err (*iterate_origin_non_clip_src16)(PF_InData*, A_long, A_long, PF_EffectWorld*, const PF_Rect*,
                                            const PF_Point*, void*, PF_IteratePixel16Func, PF_EffectWorld*);
    PF_Err (*get_pixel_data8)(PF_EffectWorld*, PF_PixelPtr, PF_Pixel8**);
    PF_Err (*get_pixel_data16)(PF_EffectWorld*, PF_PixelPtr, PF_Pixel16**);
    A_long reserved[1];
} PF_UtilCallbacks;

#ifdef __cplusplus
}  // extern "C"
#endif
