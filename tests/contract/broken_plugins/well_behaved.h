#pragma once
// An effect that keeps every rule: one popup, one slider, four bytes of sequence data, and rows that carry
// their number. The broken plug-ins differ from it in one thing each.
#include <cstring>

#include "effect/scene/export.h"
#include "hostapi/effect.h"

namespace broken {

inline PF_Handle new_block(PF_InData* in, A_u_longlong size, int value) {
    const PF_Handle handle = in->utils->host_new_handle(size);
    std::memset(in->utils->host_lock_handle(handle), value, size);
    in->utils->host_unlock_handle(handle);
    return handle;
}

inline PF_Err add_controls(PF_InData* in, PF_OutData* out) {
    PF_ParamDef popup{};
    popup.uu.id = 7;
    popup.param_type = PF_Param_POPUP;
    std::strcpy(popup.name, "Mode");
    popup.u.pd.value = popup.u.pd.dephault = 2;
    popup.u.pd.num_choices = 3;
    popup.u.pd.u.namesptr = "Off|Soft|Hard";
    if (const PF_Err error = in->inter.add_param(in->effect_ref, -1, &popup)) return error;
    PF_ParamDef slider{};
    slider.uu.id = 9;
    slider.param_type = PF_Param_FIX_SLIDER;
    std::strcpy(slider.name, "Amount");
    slider.u.fd.valid_max = slider.u.fd.slider_max = 100 * 65536;
    slider.u.fd.value = slider.u.fd.dephault = 5 * 65536;
    if (const PF_Err error = in->inter.add_param(in->effect_ref, -1, &slider)) return error;
    out->num_params = 3;
    return PF_Err_NONE;
}

inline PF_Err number_row(void* refcon, A_long, A_long y, PF_Pixel*, PF_Pixel* out) {
    const auto* world = static_cast<PF_EffectWorld*>(refcon);
    for (A_long x = 0; x < world->width; ++x) {
        if (world->world_flags & PF_WorldFlag_DEEP) {
            reinterpret_cast<PF_Pixel16*>(out)[x].red = static_cast<A_u_short>(1000 + y);
        } else {
            out[x].red = static_cast<A_u_char>(y);
        }
    }
    return PF_Err_NONE;
}

inline PF_Err render(PF_InData* in, PF_LayerDef* output, PF_IteratePixel8Func row = number_row) {
    if (const PF_Err error = in->utils->fill(in->effect_ref, nullptr, nullptr, output)) return error;
    const PF_Rect first_column{0, 0, 1, output->height};
    return in->utils->iterate(in, 0, output->height, nullptr, &first_column, output, row, output);
}

inline PF_Err answer(PF_Cmd cmd, PF_InData* in, PF_OutData* out, PF_LayerDef* output) {
    switch (cmd) {
        case PF_Cmd_GLOBAL_SETUP:
            out->out_flags = PF_OutFlag_DEEP_COLOR_AWARE | PF_OutFlag_SEND_UPDATE_PARAMS_UI;
            out->global_data = new_block(in, 4, 1);
            return PF_Err_NONE;
        case PF_Cmd_GLOBAL_SETDOWN:
            in->utils->host_dispose_handle(in->global_data);
            return PF_Err_NONE;
        case PF_Cmd_PARAMS_SETUP:
            return add_controls(in, out);
        case PF_Cmd_SEQUENCE_SETUP:
            out->sequence_data = new_block(in, 4, 42);
            return PF_Err_NONE;
        case PF_Cmd_SEQUENCE_SETDOWN:
            in->utils->host_dispose_handle(in->sequence_data);
            return PF_Err_NONE;
        case PF_Cmd_RENDER:
            return render(in, output);
        default:
            return PF_Err_NONE;
    }
}

// A suite's table, acquired.
template <class Suite>
const Suite* acquire(PF_InData* in, const char* name, int32 version) {
    const void* table = nullptr;
    in->pica_basicP->AcquireSuite(name, version, &table);
    return static_cast<const Suite*>(table);
}

}  // namespace broken

// A plug-in that keeps the rules but at one command, of which the body that follows is its answer.
#define BROKEN_AT(command)                                                                        \
    static PF_Err broken_answer(PF_InData* in, PF_OutData* out, PF_LayerDef* output);             \
    ZAM_EXPORT PF_Err EntryPointFunc(PF_Cmd cmd, PF_InData* in, PF_OutData* out, PF_ParamDef*[],  \
                                     PF_LayerDef* output, void*) {                                \
        if (cmd == (command)) return broken_answer(in, out, output);                              \
        return broken::answer(cmd, in, out, output);                                              \
    }                                                                                             \
    static PF_Err broken_answer([[maybe_unused]] PF_InData* in, [[maybe_unused]] PF_OutData* out, \
                                [[maybe_unused]] PF_LayerDef* output)
