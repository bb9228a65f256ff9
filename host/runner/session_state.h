#pragma once
// What a session keeps, and the sending of one command (commands.cpp).
#include <optional>
#include <string>
#include <vector>

#include "host/runner/callbacks.h"
#include "host/runner/instance.h"
#include "host/runner/session.h"

namespace zam::host {

struct Session::State {
    State(const Plugin& loaded, Composition& shown, SessionOptions wanted);

    // Sends a command for a composition frame. `changed` is the control of PF_Cmd_USER_CHANGED_PARAM.
    Outcome command(PF_Cmd cmd, double frame, const RenderSettings& settings = {}, int changed = 0);
    // PF_Cmd_USER_CHANGED_PARAM for a supervised control, and PF_Cmd_UPDATE_PARAMS_UI if the effect wants it.
    Outcome tell_of_change(int index, double frame);
    Outcome update_ui(double frame);
    // A command of the life cycle, which must succeed.
    Outcome demand(PF_Cmd cmd);

    const Plugin& plugin;
    Instance in;
    PF_UtilCallbacks utils;
    PF_OutData out{};
    PF_Handle global_data = nullptr, sequence_data = nullptr, frame_data = nullptr;
    PF_OutFlags global_flags = 0;  // as PF_Cmd_GLOBAL_SETUP left them
    bool global_up = false, params_up = false, sequence_up = false;
    double frame = 0.0;  // of the last command that had one
    std::optional<std::vector<std::uint8_t>> restored;
    std::vector<std::string> reports;
    const Body* body = nullptr;  // called in place of the entry point

  private:
    void fill_in_data(PF_Cmd cmd, double at, const RenderSettings& settings);
    void prepare_worlds(const RenderSettings& settings);
    void call_entry(PF_Cmd cmd, PF_ParamDef** params, PF_LayerDef* output, void* extra, Outcome& outcome);
    void check_answer(PF_Cmd cmd, Outcome& outcome);
    void remember(PF_Cmd cmd, const Outcome& outcome);
};

}  // namespace zam::host
