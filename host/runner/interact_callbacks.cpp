// The callbacks that PF_InData carries by value: adding controls, progress and cancelling.
#include "host/runner/callbacks.h"
#include "host/suites/serve.h"

namespace zam::host {
namespace {

PF_Err add_param(PF_ProgPtr effect_ref, PF_ParamIndex index, PF_ParamDefPtr definition) {
    return serve("Inter.add_param", [&](Instance& in) {
        in.check(effect_ref);
        if (in.command != PF_Cmd_PARAMS_SETUP) {
            throw Misuse{"control added outside of PF_Cmd_PARAMS_SETUP", PF_Err_INVALID_CALLBACK};
        }
        in.params.add(index, definition, in.ledger);
    });
}

void go_on(const Instance& in, PF_ProgPtr effect_ref) {
    in.check(effect_ref);
    if (in.cancelled()) throw Refusal{PF_Interrupt_CANCEL};
}

PF_Err abort_asked(PF_ProgPtr effect_ref) {
    return serve("Inter.abort", [&](Instance& in) { go_on(in, effect_ref); });
}

PF_Err progress(PF_ProgPtr effect_ref, A_long, A_long) {
    return serve("Inter.progress", [&](Instance& in) { go_on(in, effect_ref); });
}

}  // namespace

PF_InteractCallbacks interact_callbacks() {
    PF_InteractCallbacks inter{};
    inter.checkout_param = unserved<"Inter.checkout_param">;
    inter.checkin_param = unserved<"Inter.checkin_param">;
    inter.add_param = add_param;
    inter.abort = abort_asked;
    inter.progress = progress;
    inter.register_ui = unserved<"Inter.register_ui">;
    inter.checkout_layer_audio = unserved<"Inter.checkout_layer_audio">;
    inter.checkin_layer_audio = unserved<"Inter.checkin_layer_audio">;
    inter.get_audio_data = unserved<"Inter.get_audio_data">;
    return inter;
}

}  // namespace zam::host
