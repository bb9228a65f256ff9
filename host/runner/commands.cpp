// One command: what the effect is given, and what is looked at when it returns.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <exception>

#include "host/composition/queries.h"
#include "host/runner/session_state.h"
#include "host/suites/tables.h"

namespace zam::host {
namespace {

constexpr A_AppID kAppId = 0x46585443;  // 'FXTC'

// How much of in_data means something to a command.
enum class Scope { global, params, sequence, frame };

Scope scope_of(PF_Cmd cmd) {
    switch (cmd) {
        case PF_Cmd_ABOUT:
        case PF_Cmd_GLOBAL_SETUP:
        case PF_Cmd_GLOBAL_SETDOWN:
            return Scope::global;
        case PF_Cmd_PARAMS_SETUP:
            return Scope::params;
        case PF_Cmd_SEQUENCE_SETUP:
        case PF_Cmd_SEQUENCE_RESETUP:
        case PF_Cmd_SEQUENCE_FLATTEN:
        case PF_Cmd_SEQUENCE_SETDOWN:
            return Scope::sequence;
        default:
            return Scope::frame;
    }
}

bool has_params(PF_Cmd cmd) {
    return cmd == PF_Cmd_FRAME_SETUP || cmd == PF_Cmd_FRAME_SETDOWN || cmd == PF_Cmd_RENDER ||
           cmd == PF_Cmd_USER_CHANGED_PARAM || cmd == PF_Cmd_UPDATE_PARAMS_UI || cmd == PF_Cmd_EVENT;
}

PF_RationalScale interface_ratio(const Ratio& ratio) { return {ratio.num, ratio.den}; }

}  // namespace

void Session::State::fill_in_data(PF_Cmd cmd, double at, const RenderSettings& settings) {
    PF_InData& data = in.in_data;
    data = PF_InData{};
    const Scope scope = scope_of(cmd);
    const Composition& composition = in.composition;
    data.inter = interact_callbacks();
    data.utils = &utils;
    data.effect_ref = in.keys.make<PF_ProgPtr>(HandleKind::instance, 1);
    data.quality = PF_Quality_HI;
    data.version = in.options.api_version;
    data.appl_id = kAppId;
    data.num_params = params_up ? in.params.count() + 1 : 0;
    data.time_scale = static_cast<A_u_long>(composition.frame_rate.num);
    data.global_data = global_data;
    data.pica_basicP = in.options.basic_suite ? basic_suite() : nullptr;
    if (scope < Scope::sequence) return;

    const Layer* layer = composition.find_layer(composition.effect.layer);
    if (!layer) throw PluginError("the composition has no layer that carries the effect");
    const Size size = layer_size(composition, *layer);
    data.width = size.width;
    data.height = size.height;
    const Size shown = downsampled(size, settings.downsample_x, settings.downsample_y);
    data.extent_hint = {0, 0, shown.width, shown.height};
    data.downsample_x = interface_ratio(settings.downsample_x);
    data.downsample_y = interface_ratio(settings.downsample_y);
    data.pixel_aspect_ratio = interface_ratio(composition.pixel_aspect);
    data.sequence_data = sequence_data;
    if (scope < Scope::frame) return;

    // Times are the layer's. Fractions of a frame have a finer scale than whole ones.
    const A_Time now = in.time(layer_frame(*layer, at));
    const double ticks = static_cast<double>(now.scale) / composition.frame_rate.value();
    const auto in_ticks = [&](double frames) {
        return static_cast<A_long>(std::llround(std::clamp(frames * ticks, -2147483648.0, 2147483647.0)));
    };
    data.current_time = now.value;
    data.time_scale = now.scale;
    data.time_step = in_ticks(1.0);
    data.local_time_step = in_ticks(1.0);
    data.total_time =
        in_ticks(std::abs(layer_frame(*layer, layer->out_frame) - layer_frame(*layer, layer->in_frame)));
    data.frame_data = frame_data;
}

void Session::State::prepare_worlds(const RenderSettings& settings) {
    const PF_InData& data = in.in_data;
    const int width = data.extent_hint.right, height = data.extent_hint.bottom;
    const bool deep = settings.depth == Depth::bits16;
    try {
        in.output.prepare(width, height, deep, data.pixel_aspect_ratio, in.options.output_byte,
                          in.options.row_layout);
        if (in.input.width() != width || in.input.height() != height || in.input.deep() != deep) {
            in.input.prepare(width, height, deep, data.pixel_aspect_ratio, kInputByte, in.options.row_layout);
        }
    } catch (const std::bad_alloc&) {
        throw PluginError("no memory for an image of " + std::to_string(width) + " x " +
                          std::to_string(height) + "; use a smaller composition or a lower resolution");
    }
    in.output_world = in.output.interface_world(true);
}

void Session::State::call_entry(PF_Cmd cmd, PF_ParamDef** params, PF_LayerDef* output, void* extra,
                                Outcome& outcome) {
    const Instance::Scope scope(&in);
    try {
        outcome.error =
            body ? (*body)(&in.in_data, &out) : plugin.entry()(cmd, &in.in_data, &out, params, output, extra);
    } catch (int value) {
        outcome.thrown = value;
    } catch (const std::exception& exception) {
        in.ledger.report(std::string("an exception (") + exception.what() + ") left the entry point in " +
                         Instance::name_of(cmd));
    } catch (...) {
        in.ledger.report(std::string("an unknown exception left the entry point in ") +
                         Instance::name_of(cmd));
    }
}

void Session::State::check_answer(PF_Cmd cmd, Outcome& outcome) {
    Ledger& ledger = in.ledger;
    const std::string name = Instance::name_of(cmd);
    const std::size_t length = strnlen(out.return_msg, sizeof out.return_msg);
    if (length == sizeof out.return_msg) ledger.report("return_msg without a terminator after " + name);
    outcome.message.assign(out.return_msg, length);
    outcome.out_flags = out.out_flags;
    outcome.message_is_error = (out.out_flags & PF_OutFlag_DISPLAY_ERROR_MESSAGE) != 0;
    const bool answered = outcome.error == 0 && !outcome.thrown;
    if (cmd == PF_Cmd_PARAMS_SETUP && answered && out.num_params != in.params.count() + 1) {
        ledger.report(name + " set num_params to " + std::to_string(out.num_params) + ", but added " +
                      std::to_string(in.params.count()) + " controls to the input layer");
    }
    in.output.check("output", ledger);  // after other commands too: their pointers may be old ones
    in.input.check("input", ledger);
    if (has_params(cmd)) outcome.changed_controls = in.params.take_changes();
    outcome.ui_updates = in.params.take_ui_updates();
    in.memory.balance({global_data, sequence_data, frame_data});
    outcome.reports = ledger.end();
    reports.insert(reports.end(), outcome.reports.begin(), outcome.reports.end());
}

void Session::State::remember(PF_Cmd cmd, const Outcome& outcome) {
    const bool done = outcome.error == 0 && !outcome.thrown;
    if (cmd == PF_Cmd_GLOBAL_SETUP && done) {
        global_up = true;
        global_flags = out.out_flags;
    }
    if (cmd == PF_Cmd_PARAMS_SETUP && done) params_up = true;
    if ((cmd == PF_Cmd_SEQUENCE_SETUP || cmd == PF_Cmd_SEQUENCE_RESETUP) && done) sequence_up = true;
    if (cmd == PF_Cmd_SEQUENCE_SETDOWN) sequence_up = false;
    if (cmd == PF_Cmd_GLOBAL_SETDOWN) global_up = params_up = false;
}

Outcome Session::State::command(PF_Cmd cmd, double at, const RenderSettings& settings, int changed) {
    in.begin(cmd, at);
    fill_in_data(cmd, at, settings);
    PF_UserChangedParamExtra extra{changed};
    PF_EffectWorld no_pixels{};
    if (cmd == PF_Cmd_RENDER) prepare_worlds(settings);
    if (cmd == PF_Cmd_PARAMS_SETUP) in.params = ParamsStore();
    PF_ParamDef** params = nullptr;
    if (has_params(cmd)) {
        params = in.params.present(at, cmd == PF_Cmd_RENDER ? in.input.interface_world(false) : no_pixels);
    }
    if (in.options.amend_in_data) in.options.amend_in_data(in.in_data);
    out.return_msg[0] = '\0';
    out.out_flags = 0;
    out.global_data = global_data;
    out.sequence_data = sequence_data;
    out.frame_data = frame_data;

    Outcome outcome;
    call_entry(cmd, params, cmd == PF_Cmd_RENDER ? &in.output_world : nullptr,
               cmd == PF_Cmd_USER_CHANGED_PARAM ? &extra : nullptr, outcome);

    // What is there now are the handles from now on, but for those that the effect has just disposed of.
    global_data = cmd == PF_Cmd_GLOBAL_SETDOWN ? nullptr : out.global_data;
    sequence_data = cmd == PF_Cmd_SEQUENCE_SETDOWN ? nullptr : out.sequence_data;
    frame_data = cmd == PF_Cmd_FRAME_SETDOWN ? nullptr : out.frame_data;
    check_answer(cmd, outcome);
    remember(cmd, outcome);
    return outcome;
}

}  // namespace zam::host
