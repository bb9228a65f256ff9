#pragma once
// Constants of the host interface, under the interface's names.

#include "hostapi/types.h"

#ifdef __cplusplus
extern "C" {
#endif

// Commands.
enum {
    PF_Cmd_ABOUT = 0,
    PF_Cmd_GLOBAL_SETUP = 1,
    PF_Cmd_UNUSED_0 = 2,
    PF_Cmd_GLOBAL_SETDOWN = 3,
    PF_Cmd_PARAMS_SETUP = 4,
    PF_Cmd_SEQUENCE_SETUP = 5,
    PF_Cmd_SEQUENCE_RESETUP = 6,
    PF_Cmd_SEQUENCE_FLATTEN = 7,
    PF_Cmd_SEQUENCE_SETDOWN = 8,
    PF_Cmd_DO_DIALOG = 9,
    PF_Cmd_FRAME_SETUP = 10,
    PF_Cmd_RENDER = 11,
    PF_Cmd_FRAME_SETDOWN = 12,
    PF_Cmd_USER_CHANGED_PARAM = 13,
    PF_Cmd_UPDATE_PARAMS_UI = 14,
    PF_Cmd_EVENT = 15,
};

// Results.
enum {
    PF_Err_NONE = 0,
    PF_Err_OUT_OF_MEMORY = 4,
    PF_Err_INTERNAL_STRUCT_DAMAGED = 512,
    PF_Err_INVALID_INDEX = 513,
    PF_Err_UNRECOGNIZED_PARAM_TYPE = 514,
    PF_Err_INVALID_CALLBACK = 515,
    PF_Err_BAD_CALLBACK_PARAM = 516,
    PF_Err_CANNOT_PARSE_KEYFRAME_TEXT = 518,
    PF_Interrupt_CANCEL = 517,
    A_Err_NONE = 0,
    A_Err_GENERIC = 1,
    A_Err_STRUCT = 2,
    A_Err_PARAMETER = 3,
    A_Err_ALLOC = 4,
    A_Err_WRONG_THREAD = 5,
    A_Err_CONST_PROJECT_MODIFICATION = 6,
    A_Err_MISSING_SUITE = 13,
};

// Version word: stage, and where each number sits.
enum {
    PF_Stage_DEVELOP = 0,
    PF_Stage_ALPHA = 1,
    PF_Stage_BETA = 2,
    PF_Stage_RELEASE = 3,
    PF_Vers_BUILD_SHIFT = 0,
    PF_Vers_STAGE_SHIFT = 9,
    PF_Vers_BUGFIX_SHIFT = 11,
    PF_Vers_SUBVERS_SHIFT = 15,
    PF_Vers_VERS_SHIFT = 19,
    PF_AE_PLUG_IN_VERSION = 13,
    PF_AE_PLUG_IN_SUBVERS = 29,
};

// Controls.
enum {
    PF_Param_LAYER = 0,
    PF_Param_SLIDER = 1,
    PF_Param_FIX_SLIDER = 2,
    PF_Param_ANGLE = 3,
    PF_Param_CHECKBOX = 4,
    PF_Param_COLOR = 5,
    PF_Param_POINT = 6,
    PF_Param_POPUP = 7,
    PF_Param_CUSTOM = 8,
    PF_Param_NO_DATA = 9,
    PF_Param_FLOAT_SLIDER = 10,
    PF_Param_ARBITRARY_DATA = 11,
    PF_Param_PATH = 12,
    PF_Param_GROUP_START = 13,
    PF_Param_GROUP_END = 14,
    PF_Param_BUTTON = 15,
    PF_Param_POINT_3D = 18,
};

enum {
    PF_ParamFlag_NONE = 0x0,
    PF_ParamFlag_CANNOT_TIME_VARY = 0x2,
    PF_ParamFlag_CANNOT_INTERP = 0x4,
    PF_ParamFlag_COLLAPSE_TWIRLY = 0x20,
    PF_ParamFlag_START_COLLAPSED = 0x20,
    PF_ParamFlag_SUPERVISE = 0x40,
};

enum {
    PF_PUI_NONE = 0x0,
    PF_PUI_DISABLED = 0x20,
    PF_PUI_INVISIBLE = 0x200,
};

enum {
    PF_ChangeFlag_NONE = 0x0,
    PF_ChangeFlag_CHANGED_VALUE = 0x1,
};

enum {
    PF_Precision_INTEGER = 0,
    PF_Precision_TENTHS = 1,
    PF_Precision_HUNDREDTHS = 2,
    PF_ValueDisplayFlag_NONE = 0,
    PF_LayerDefault_MYSELF = -1,
    PF_LayerDefault_NONE = 0,
};

// Flags of PF_OutData and of worlds.
enum {
    PF_OutFlag_NONE = 0x0,
    PF_OutFlag_KEEP_RESOURCE_OPEN = 0x1,
    PF_OutFlag_DISPLAY_ERROR_MESSAGE = 0x100,
    PF_OutFlag_REFRESH_UI = 0x20000,
    PF_OutFlag_PiPL_OVERRIDES_OUTDATA_OUTFLAGS = 0x800000,
    PF_OutFlag_DEEP_COLOR_AWARE = 0x2000000,
    PF_OutFlag_SEND_UPDATE_PARAMS_UI = 0x4000000,
    PF_OutFlag2_NONE = 0x0,
    PF_OutFlag2_I_USE_3D_CAMERA = 0x2,
    PF_OutFlag2_I_USE_3D_LIGHTS = 0x4,
    PF_OutFlag2_PARAM_GROUP_START_COLLAPSED_FLAG = 0x8,
    PF_OutFlag2_SUPPORTS_SMART_RENDER = 0x400,
    PF_WorldFlag_DEEP = 0x1,
    PF_WorldFlag_WRITEABLE = 0x2,
};

// Limits and full scales.
enum {
    PF_MAX_EFFECT_PARAM_NAME_LEN = 31,
    PF_MAX_EFFECT_MSG_LEN = 255,
    PF_MAX_WORLD_WIDTH = 30000,
    PF_MAX_WORLD_HEIGHT = 30000,
    PF_MAX_CHAN8 = 255,
    PF_MAX_CHAN16 = 32768,
    AEGP_MAX_LAYER_NAME_SIZE = 32,
    AEGP_MAX_ITEM_NAME_SIZE = 32,
    PF_Quality_LO = 0,
    PF_Quality_HI = 1,
    PF_Field_FRAME = 0,
};

// Layers, lights and cameras.
enum {
    AEGP_ObjectType_NONE = -1,
    AEGP_ObjectType_AV = 0,
    AEGP_ObjectType_LIGHT = 1,
    AEGP_ObjectType_CAMERA = 2,
    AEGP_ObjectType_TEXT = 3,
    AEGP_ObjectType_VECTOR = 4,
    AEGP_ObjectType_3D_MODEL = 5,
    AEGP_LightType_PARALLEL = 0,
    AEGP_LightType_SPOT = 1,
    AEGP_LightType_POINT = 2,
    AEGP_LightType_AMBIENT = 3,
    AEGP_LightType_ENVIRONMENT = 4,
    AEGP_CameraType_PERSPECTIVE = 0,
    AEGP_FilmSizeUnits_HORIZONTAL = 1,
};

enum {
    AEGP_LayerFlag_NONE = 0x0,
    AEGP_LayerFlag_VIDEO_ACTIVE = 0x1,
    AEGP_LayerFlag_AUDIO_ACTIVE = 0x2,
    AEGP_LayerFlag_EFFECTS_ACTIVE = 0x4,
    AEGP_LayerFlag_LOCKED = 0x20,
    AEGP_LayerFlag_SHY = 0x40,
    AEGP_LayerFlag_LAYER_IS_3D = 0x800,
    AEGP_LayerFlag_LOOK_AT_POI = 0x2000,
    AEGP_LayerFlag_SOLO = 0x4000,
    AEGP_LayerFlag_NULL_LAYER = 0x10000,
};

// Streams of a layer and their times.
enum {
    AEGP_LTimeMode_LayerTime = 0,
    AEGP_LTimeMode_CompTime = 1,
    AEGP_LayerStream_ANCHORPOINT = 0,
    AEGP_LayerStream_POSITION = 1,
    AEGP_LayerStream_SCALE = 2,
    AEGP_LayerStream_ROTATION = 3,
    AEGP_LayerStream_OPACITY = 4,
    AEGP_LayerStream_ROTATE_X = 8,
    AEGP_LayerStream_ROTATE_Y = 9,
    AEGP_LayerStream_ORIENTATION = 10,
    AEGP_LayerStream_ZOOM = 11,
    AEGP_LayerStream_INTENSITY = 16,
    AEGP_LayerStream_COLOR = 17,
    AEGP_LayerStream_CONE_ANGLE = 18,
    AEGP_LayerStream_CONE_FEATHER = 19,
    AEGP_LayerStream_SHADOW_DARKNESS = 20,
    AEGP_LayerStream_SHADOW_DIFFUSION = 21,
    AEGP_LayerStream_CASTS_SHADOWS = 28,
    AEGP_LayerStream_LIGHT_FALLOFF_TYPE = 40,
    AEGP_LayerStream_LIGHT_FALLOFF_START = 41,
    AEGP_LayerStream_LIGHT_FALLOFF_DISTANCE = 42,
    AEGP_StreamType_NO_DATA = 0,
    AEGP_StreamType_ThreeD_SPATIAL = 1,
    AEGP_StreamType_ThreeD = 2,
    AEGP_StreamType_TwoD_SPATIAL = 3,
    AEGP_StreamType_TwoD = 4,
    AEGP_StreamType_OneD = 5,
    AEGP_StreamType_COLOR = 6,
    AEGP_StreamType_ARB = 7,
    AEGP_StreamType_MARKER = 8,
    AEGP_StreamType_LAYER_ID = 9,
    AEGP_StreamType_MASK_ID = 10,
    AEGP_StreamType_MASK = 11,
    AEGP_StreamType_TEXT_DOCUMENT = 12,
    AEGP_NumKF_NO_DATA = -1,
    AEGP_ItemType_COMP = 2,
    AEGP_ItemType_FOOTAGE = 4,
};

#ifdef __cplusplus
}  // extern "C"
#endif
