#pragma once
// Scalar types, opaque handles and small structures of the host's C interface.
// Compiles alone as C11 and as C++20; every declaration in hostapi/ has the size and layout of 64-bit After
// Effects on Windows and macOS (tests/hostapi holds them against measured facts). No C `long` appears: it is
// 8 bytes on some of the platforms and 4 on others.

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

// Integers and floating point.
typedef char A_char;
typedef uint8_t A_u_char;
typedef int16_t A_short;
typedef uint16_t A_u_short;
typedef int32_t A_long;
typedef uint32_t A_u_long;
typedef uint64_t A_u_longlong;
typedef float A_FpShort;
typedef double A_FpLong;
typedef uint8_t A_Boolean;
typedef int32_t A_Fixed;
typedef uint64_t A_HandleSize;
typedef int64_t A_intptr_t;

// Results: 0 is success.
typedef int32_t A_Err;
typedef int32_t PF_Err;
typedef int32_t SPErr;
typedef int32_t int32;

// The basic suite's own truth value; its width is the one difference between the platforms here.
#ifdef _WIN32
typedef int32_t SPBoolean;
#else
typedef uint8_t SPBoolean;
#endif

// Names of the effect interface for the same scalars. PF_Fixed is signed 16.16: 65536 is 1.0.
typedef uint8_t PF_Boolean;
typedef int32_t PF_Fixed;
typedef uint32_t PF_UFixed;
typedef double PF_FpLong;
typedef float PF_FpShort;
typedef int32_t PF_Cmd;
typedef int32_t PF_ParamIndex;
typedef int32_t PF_ParamValue;
typedef int32_t PF_ParamType;
typedef int32_t PF_ParamFlags;
typedef int32_t PF_ParamUIFlags;
typedef int32_t PF_ChangeFlags;
typedef int32_t PF_OutFlags;
typedef int32_t PF_OutFlags2;
typedef int32_t PF_InFlags;
typedef int32_t PF_WorldFlags;
typedef int32_t PF_Quality;
typedef int32_t PF_Field;
typedef int16_t PF_Precision;
typedef int16_t PF_ValueDisplayFlags;
typedef uint32_t PF_FSliderFlags;
typedef uint32_t PF_PathID;
typedef uint32_t PF_KernelFlags;
typedef int32_t PF_MaskFlags;
typedef int32_t PF_ModeFlags;
typedef int32_t PF_NewWorldFlags;
typedef int32_t PF_PlatDataID;
typedef uint32_t PF_SampleEdgeBehav;
typedef int32_t PF_TimeDir;
typedef int32_t PF_KeyIndex;
typedef int32_t PF_TransferMode;
typedef int32_t PF_XferMode;
typedef int32_t PF_CustomEventFlags;
typedef int32_t PF_UIAlignment;
typedef int32_t PF_CallbackID;
typedef int16_t PF_SoundChannels;
typedef int16_t PF_SoundFormat;
typedef int16_t PF_SoundSampleSize;
typedef int32_t A_AppID;

// Names of the scene interface for the same scalars. The time mode and item type are 16 bits wide; the light
// type is unsigned, the object type signed.
typedef int32_t AEGP_PluginID;
typedef int32_t AEGP_LayerIDVal;
typedef int32_t AEGP_MaskIDVal;
typedef uint32_t AEGP_LightType;
typedef int32_t AEGP_ObjectType;
typedef uint32_t AEGP_CameraType;
typedef int32_t AEGP_FilmSizeUnits;
typedef int16_t AEGP_LTimeMode;
typedef int32_t AEGP_LayerStream;
typedef int32_t AEGP_MaskStream;
typedef int32_t AEGP_StreamType;
typedef int32_t AEGP_StreamFlags;
typedef int32_t AEGP_LayerFlags;
typedef int16_t AEGP_LayerQuality;
typedef int32_t AEGP_TransferFlags;
typedef int32_t AEGP_TrackMatte;
typedef int32_t AEGP_CompFlags;
typedef int16_t AEGP_ItemType;
typedef int32_t AEGP_ItemFlags;
typedef int32_t AEGP_EffectFlags;
typedef int32_t AEGP_EffectIndex;
typedef int32_t AEGP_InstalledEffectKey;
typedef int32_t AEGP_KeyframeIndex;
typedef int32_t AEGP_KeyframeFlags;
typedef int32_t AEGP_KeyframeInterpolationType;
typedef int32_t AEGP_SoundEncoding;

// A block of host memory: the address of a master pointer, which may move while the block is unlocked.
typedef void** PF_Handle;
typedef void** PF_ArbitraryH;

// Opaque host objects: passed by value and compared with null only.
typedef struct PF_ProgressInfo* PF_ProgPtr;
typedef struct PF_YouMustCastThisToActualFunctionType* PF_CallbackFunc;
typedef struct _PF_LayerAudio* PF_LayerAudio;
typedef void* PF_SndSamplePtr;
typedef struct PR_RenderContext** PR_RenderContextH;
typedef struct _AEGP_Layer** AEGP_LayerH;
typedef struct _AEGP_Comp** AEGP_CompH;
typedef struct _AEGP_Item** AEGP_ItemH;
typedef struct _AEGPp_Stream** AEGP_StreamRefH;
typedef struct _AEGP_Effect** AEGP_EffectRefH;
typedef struct _AEGP_Mask** AEGP_MaskRefH;
typedef struct _Up_OpaqueMem** AEGP_MemHandle;
typedef struct _AEGP_MarkerVal* AEGP_MarkerValP;
typedef struct _AEGP_MaskOutline** AEGP_MaskOutlineValH;
typedef struct _AEGP_TextDocument** AEGP_TextDocumentH;
typedef void* AEGP_ArbBlockVal;
typedef struct _AEGP_Collection** AEGP_CollectionH;
typedef struct _AEGP_Collection2** AEGP_Collection2H;
typedef struct _AEGP_SoundData** AEGP_SoundDataH;

// A time is value / scale seconds; scale 0 is not a time.
typedef struct A_Time {
    A_long value;
    A_u_long scale;
} A_Time;

typedef struct A_Ratio {
    A_long num;
    A_u_long den;
} A_Ratio;

typedef struct A_FloatPoint {
    A_FpLong x;
    A_FpLong y;
} A_FloatPoint;

typedef struct A_FloatRect {
    A_FpLong left;
    A_FpLong top;
    A_FpLong right;
    A_FpLong bottom;
} A_FloatRect;

// Row-major, row vectors: p' = p * M. Rows 0 to 2 are the images of the axes, row 3 the translation.
typedef struct A_Matrix4 {
    A_FpLong mat[4][4];
} A_Matrix4;

typedef struct PF_SpecVersion {
    A_short major;
    A_short minor;
} PF_SpecVersion;

typedef struct PF_RationalScale {
    A_long num;
    A_u_long den;
} PF_RationalScale;

typedef struct PF_Point {
    A_long h;
    A_long v;
} PF_Point;

// Mind the order: left comes first. Right and bottom are exclusive.
typedef struct PF_LRect {
    A_long left;
    A_long top;
    A_long right;
    A_long bottom;
} PF_LRect;

typedef PF_LRect PF_Rect;
typedef PF_LRect PF_UnionableRect;

// Full scale 255.
typedef struct PF_Pixel {
    A_u_char alpha;
    A_u_char red;
    A_u_char green;
    A_u_char blue;
} PF_Pixel;

// Full scale 32768.
typedef struct PF_Pixel16 {
    A_u_short alpha;
    A_u_short red;
    A_u_short green;
    A_u_short blue;
} PF_Pixel16;

typedef PF_Pixel PF_Pixel8;
typedef PF_Pixel* PF_PixelPtr;
typedef PF_Pixel PF_UnionablePixel;

#ifdef __cplusplus
}  // extern "C"
#endif
