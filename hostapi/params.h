#pragma once
// Image buffers ("worlds") and control definitions.

#include "hostapi/types.h"

#ifdef __cplusplus
extern "C" {
#endif

// An image. Rows are `rowbytes` apart, which may exceed width * pixel size. In a layer control only
// `dephault` means something when the control is added.
typedef struct PF_LayerDef {
    void* reserved0;
    void* reserved1;
    PF_WorldFlags world_flags;
    PF_PixelPtr data;
    A_long rowbytes;
    A_long width;
    A_long height;
    PF_UnionableRect extent_hint;
    void* platform_ref;
    A_long reserved_long1;
    void* reserved_long4;
    PF_RationalScale pix_aspect_ratio;
    void* reserved_long2;
    A_long origin_x;
    A_long origin_y;
    A_long reserved_long3;
    A_long dephault;
} PF_LayerDef;

typedef PF_LayerDef PF_EffectWorld;

typedef struct PF_SliderDef {
    PF_ParamValue value;
    A_char value_str[32];
    A_char value_desc[32];
    PF_ParamValue valid_min;
    PF_ParamValue valid_max;
    PF_ParamValue slider_min;
    PF_ParamValue slider_max;
    PF_ParamValue dephault;
} PF_SliderDef;

typedef struct PF_FixedSliderDef {
    PF_Fixed value;
    A_char value_str[32];
    A_char value_desc[32];
    PF_Fixed valid_min;
    PF_Fixed valid_max;
    PF_Fixed slider_min;
    PF_Fixed slider_max;
    PF_Fixed dephault;
    PF_Precision precision;
    PF_ValueDisplayFlags display_flags;
} PF_FixedSliderDef;

typedef struct PF_AngleDef {
    PF_Fixed value;
    PF_Fixed dephault;
    PF_Fixed valid_min;
    PF_Fixed valid_max;
} PF_AngleDef;

// The value has 32 bits, the default one byte.
typedef struct PF_CheckBoxDef {
    PF_ParamValue value;
    PF_Boolean dephault;
    A_char reserved;
    A_short reserved1;
    union {
        const A_char* nameptr;
    } u;
} PF_CheckBoxDef;

typedef struct PF_ColorDef {
    PF_UnionablePixel value;
    PF_UnionablePixel dephault;
} PF_ColorDef;

typedef struct PF_PointDef {
    PF_Fixed x_value;
    PF_Fixed y_value;
    A_char reserved[3];
    PF_Boolean restrict_bounds;
    PF_Fixed x_dephault;
    PF_Fixed y_dephault;
} PF_PointDef;

// The value has 32 bits and counts from 1, the default 16 bits. Items are joined by "|".
typedef struct PF_PopupDef {
    PF_ParamValue value;
    A_short num_choices;
    A_short dephault;
    union {
        const A_char* namesptr;
    } u;
} PF_PopupDef;

typedef struct PF_FloatSliderDef {
    PF_FpLong value;
    PF_FpLong phase;
    A_char value_desc[32];
    PF_FpShort valid_min;
    PF_FpShort valid_max;
    PF_FpShort slider_min;
    PF_FpShort slider_max;
    PF_FpShort dephault;
    PF_Precision precision;
    PF_ValueDisplayFlags display_flags;
    PF_FSliderFlags fs_flags;
    PF_FpShort curve_tolerance;
    PF_Boolean useExponent;
    PF_FpShort exponent;
} PF_FloatSliderDef;

typedef struct PF_ArbitraryDef {
    A_short id;
    A_short pad;
    PF_ArbitraryH dephault;
    PF_ArbitraryH value;
    void* refconPV;
} PF_ArbitraryDef;

typedef struct PF_PathDef {
    PF_PathID path_id;
    A_long reserved0;
    A_long dephault;
} PF_PathDef;

typedef struct PF_ButtonDef {
    PF_ParamValue value;
    union {
        const A_char* namesptr;
    } u;
} PF_ButtonDef;

typedef struct PF_Point3DDef {
    PF_FpLong x_value;
    PF_FpLong y_value;
    PF_FpLong z_value;
    PF_FpLong x_dephault;
    PF_FpLong y_dephault;
    PF_FpLong z_dephault;
    char reserved[16];
} PF_Point3DDef;

typedef union PF_ParamDefUnion {
    PF_LayerDef ld;
    PF_SliderDef sd;
    PF_FixedSliderDef fd;
    PF_AngleDef ad;
    PF_CheckBoxDef bd;
    PF_ColorDef cd;
    PF_PointDef td;
    PF_PopupDef pd;
    PF_FloatSliderDef fs_d;
    PF_ArbitraryDef arb_d;
    PF_PathDef path_d;
    PF_ButtonDef button_d;
    PF_Point3DDef point3d_d;
} PF_ParamDefUnion;

// `uu.id` is the persistent id when the control is added; later the same bytes are `uu.change_flags`.
typedef struct PF_ParamDef {
    union {
        A_long id;
        PF_ChangeFlags change_flags;
    } uu;
    PF_ParamUIFlags ui_flags;
    A_short ui_width;
    A_short ui_height;
    PF_ParamType param_type;
    A_char name[32];
    PF_ParamFlags flags;
    A_long unused;
    PF_ParamDefUnion u;
} PF_ParamDef;

typedef PF_ParamDef* PF_ParamDefPtr;
typedef PF_ParamDef** PF_ParamList;

#ifdef __cplusplus
}  // extern "C"
#endif
