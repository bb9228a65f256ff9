#pragma once
// Values of the scene interface.

#include "hostapi/types.h"

#ifdef __cplusplus
extern "C" {
#endif

// Alpha comes first.
typedef struct AEGP_ColorVal {
    A_FpLong alphaF;
    A_FpLong redF;
    A_FpLong greenF;
    A_FpLong blueF;
} AEGP_ColorVal;

typedef struct AEGP_TwoDVal {
    A_FpLong x;
    A_FpLong y;
} AEGP_TwoDVal;

typedef struct AEGP_ThreeDVal {
    A_FpLong x;
    A_FpLong y;
    A_FpLong z;
} AEGP_ThreeDVal;

typedef double AEGP_OneDVal;
typedef A_FpLong AEGP_FourDVal[4];

// Older form of a marker; streams hand it out by handle.
typedef struct AEGP_MarkerVal {
    A_char nameAC[64];
    A_char urlAC[1024];
    A_char targetAC[128];
    A_char chapterAC[128];
} AEGP_MarkerVal;

typedef AEGP_MarkerVal** AEGP_MarkerValH;

typedef union AEGP_StreamVal {
    AEGP_FourDVal four_d;
    AEGP_ThreeDVal three_d;
    AEGP_TwoDVal two_d;
    AEGP_OneDVal one_d;
    AEGP_ColorVal color;
    AEGP_ArbBlockVal arbH;
    AEGP_MarkerValH markerH;
    AEGP_LayerIDVal layer_id;
    AEGP_MaskIDVal mask_id;
    AEGP_MaskOutlineValH mask;
    AEGP_TextDocumentH text_documentH;
} AEGP_StreamVal;

// A value together with the stream it belongs to.
typedef struct AEGP_StreamValue {
    AEGP_StreamRefH streamH;
    AEGP_StreamVal val;
} AEGP_StreamValue;

typedef struct AEGP_DownsampleFactor {
    A_short xS;
    A_short yS;
} AEGP_DownsampleFactor;

typedef struct AEGP_LayerTransferMode {
    PF_TransferMode mode;
    AEGP_TransferFlags flags;
    AEGP_TrackMatte track_matte;
} AEGP_LayerTransferMode;

typedef struct AEGP_KeyframeEase {
    A_FpLong speedF;
    A_FpLong influenceF;
} AEGP_KeyframeEase;

typedef struct AEGP_SoundDataFormat {
    A_FpLong sample_rateF;
    AEGP_SoundEncoding encoding;
    A_long bytes_per_sampleL;
    A_long num_channelsL;
} AEGP_SoundDataFormat;

#ifdef __cplusplus
}  // extern "C"
#endif
