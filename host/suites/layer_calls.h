#pragma once
// The layer suite's calls, which its versions share: they differ in the places of the calls only.
#include "hostapi/layer_suites.h"

namespace zam::host::layer_calls {

A_Err get_comp_num_layers(AEGP_CompH comp, A_long* count);
A_Err get_comp_layer_by_index(AEGP_CompH comp, A_long index, AEGP_LayerH* layer);
A_Err get_layer_index(AEGP_LayerH layer, A_long* index);
A_Err get_layer_source_item(AEGP_LayerH layer, AEGP_ItemH* item);
A_Err get_layer_parent_comp(AEGP_LayerH layer, AEGP_CompH* comp);
A_Err get_layer_name(AEGP_LayerH layer, A_char* own, A_char* source);
A_Err get_layer_flags(AEGP_LayerH layer, AEGP_LayerFlags* flags);
A_Err is_video_really_on(AEGP_LayerH layer, A_Boolean* on);
A_Err get_layer_current_time(AEGP_LayerH layer, AEGP_LTimeMode mode, A_Time* time);
A_Err get_layer_in_point(AEGP_LayerH layer, AEGP_LTimeMode mode, A_Time* time);
A_Err get_layer_duration(AEGP_LayerH layer, AEGP_LTimeMode mode, A_Time* time);
A_Err get_layer_offset(AEGP_LayerH layer, A_Time* time);
A_Err get_layer_stretch(AEGP_LayerH layer, A_Ratio* stretch);
A_Err get_layer_object_type(AEGP_LayerH layer, AEGP_ObjectType* type);
A_Err is_layer_3d(AEGP_LayerH layer, A_Boolean* is);
A_Err is_layer_2d(AEGP_LayerH layer, A_Boolean* is);
A_Err is_video_active(AEGP_LayerH layer, AEGP_LTimeMode mode, const A_Time* time, A_Boolean* active);
A_Err comp_to_layer_time(AEGP_LayerH layer, const A_Time* comp_time, A_Time* layer_time);
A_Err layer_to_comp_time(AEGP_LayerH layer, const A_Time* layer_time, A_Time* comp_time);
A_Err get_layer_id(AEGP_LayerH layer, AEGP_LayerIDVal* id);
A_Err get_layer_to_world(AEGP_LayerH layer, const A_Time* comp_time, A_Matrix4* matrix);
A_Err get_layer_to_world_from_view(AEGP_LayerH layer, const A_Time* view_time, const A_Time* comp_time,
                                   A_Matrix4* matrix);
A_Err get_layer_parent(AEGP_LayerH layer, AEGP_LayerH* parent);

// These change the project.
A_Err set_layer_flag(AEGP_LayerH layer, AEGP_LayerFlags flag, A_Boolean on);
A_Err set_layer_in_point_and_duration(AEGP_LayerH layer, AEGP_LTimeMode mode, const A_Time* in_point,
                                      const A_Time* duration);
A_Err set_layer_offset(AEGP_LayerH layer, const A_Time* offset);
A_Err set_layer_name(AEGP_LayerH layer, const A_char* name);
A_Err set_layer_parent(AEGP_LayerH layer, AEGP_LayerH parent);
A_Err delete_layer(AEGP_LayerH layer);

}  // namespace zam::host::layer_calls
