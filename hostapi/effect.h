#pragma once
// The argument blocks of an effect's entry point.

#include "hostapi/basic_suite.h"
#include "hostapi/callbacks.h"
#include "hostapi/constants.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef struct PF_SoundFormatInfo {
    PF_FpLong rateF;
    PF_SoundChannels num_channels;
    PF_SoundFormat format;
    PF_SoundSampleSize sample_size;
} PF_SoundFormatInfo;

typedef struct PF_SoundWorld {
    PF_SoundFormatInfo fi;
    A_long num_samples;
    void* dataP;
} PF_SoundWorld;

// What the host tells the effect; refreshed before every command.
struct PF_InData {
    PF_InteractCallbacks inter;
    PF_UtilCallbacks* utils;
    PF_ProgPtr effect_ref;
    PF_Quality quality;
    PF_SpecVersion version;
    A_long serial_num;
    A_AppID appl_id;
    A_long num_params;
    A_long reserved;
    A_long what_cpu;
    A_long what_fpu;
    A_long current_time;
    A_long time_step;
    A_long total_time;
    A_long local_time_step;
    A_u_long time_scale;
    PF_Field field;
    PF_Fixed shutter_angle;
    A_long width;
    A_long height;
    PF_Rect extent_hint;
    A_long output_origin_x;
    A_long output_origin_y;
    PF_RationalScale downsample_x;
    PF_RationalScale downsample_y;
    PF_RationalScale pixel_aspect_ratio;
    PF_InFlags in_flags;
    PF_Handle global_data;
    PF_Handle sequence_data;
    PF_Handle frame_data;
    A_long start_sampL;
    A_long dur_sampL;
    A_long total_sampL;
    PF_SoundWorld src_snd;
    SPBasicSuite* pica_basicP;
    A_long pre_effect_source_origin_x;
    A_long pre_effect_source_origin_y;
    PF_Fixed shutter_phase;
};

// What the effect tells the host. The host clears `out_flags` and `return_msg` before a command and shows any
// text afterwards, as an error when PF_OutFlag_DISPLAY_ERROR_MESSAGE is set.
typedef struct PF_OutData {
    A_u_long my_version;
    A_char name[32];
    PF_Handle global_data;
    A_long num_params;
    PF_Handle sequence_data;
    A_long flat_sdata_size;
    PF_Handle frame_data;
    A_long width;
    A_long height;
    PF_Point origin;
    PF_OutFlags out_flags;
    A_char return_msg[256];
    A_long start_sampL;
    A_long dur_sampL;
    PF_SoundWorld dest_snd;
    PF_OutFlags2 out_flags2;
} PF_OutData;

// `extra` of PF_Cmd_USER_CHANGED_PARAM.
typedef struct PF_UserChangedParamExtra {
    PF_ParamIndex param_index;
} PF_UserChangedParamExtra;

// An effect's one exported entry point. The name is the one its property resource declares.
typedef PF_Err (*PF_EntryPointFunc)(PF_Cmd cmd, PF_InData* in_data, PF_OutData* out_data,
                                    PF_ParamDef* params[], PF_LayerDef* output, void* extra);

#ifdef __cplusplus
}  // extern "C"
#endif
