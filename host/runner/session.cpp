#include "host/runner/session.h"

#include <cstring>
#include <exception>
#include <thread>

#include "host/composition/queries.h"
#include "host/runner/session_state.h"

namespace zam::host {
namespace {

// Runs `work` on a thread of its own, as frames are, and waits for it.
template <class Work>
void on_worker(Work&& work) {
    std::exception_ptr failure;
    std::thread worker([&] {
        try {
            work();
        } catch (...) {
            failure = std::current_exception();
        }
    });
    worker.join();
    if (failure) std::rethrow_exception(failure);
}

bool is_render_command(PF_Cmd cmd) {
    return cmd == PF_Cmd_FRAME_SETUP || cmd == PF_Cmd_RENDER || cmd == PF_Cmd_FRAME_SETDOWN;
}

std::string failure_text(const std::string& path, PF_Cmd cmd, const Outcome& outcome) {
    std::string text = path + ": " + Instance::name_of(cmd);
    if (outcome.thrown)
        text += " threw " + std::to_string(*outcome.thrown);
    else if (outcome.error)
        text += " answered " + std::to_string(outcome.error);
    else
        text += " broke the rules";
    if (!outcome.message.empty()) text += ", message \"" + outcome.message + "\"";
    for (const std::string& report : outcome.reports) text += "\n" + report;
    return text;
}

// The first error and message, all reports.
void merge(Outcome& first, Outcome then) {
    if (first.error == 0) first.error = then.error;
    if (!first.thrown) first.thrown = then.thrown;
    if (first.message.empty()) first.message = std::move(then.message);
    first.message_is_error = first.message_is_error || then.message_is_error;
    first.out_flags |= then.out_flags;
    first.reports.insert(first.reports.end(), then.reports.begin(), then.reports.end());
    first.changed_controls.insert(first.changed_controls.end(), then.changed_controls.begin(),
                                  then.changed_controls.end());
    first.ui_updates.insert(first.ui_updates.end(), then.ui_updates.begin(), then.ui_updates.end());
}

void check_composition(const Composition& composition) {
    const auto wrong = [](const std::string& what) { throw PluginError("the composition has " + what); };
    if (composition.frame_rate.num <= 0 || composition.frame_rate.den == 0) wrong("no frame rate above 0");
    if (composition.pixel_aspect.num <= 0 || composition.pixel_aspect.den == 0)
        wrong("no pixel aspect above 0");
    const Layer* layer = composition.find_layer(composition.effect.layer);
    if (!layer)
        wrong("no layer with id " + std::to_string(composition.effect.layer) + " to carry the effect");
    const auto fits = [](int width, int height) {
        return width > 0 && height > 0 && width <= PF_MAX_WORLD_WIDTH && height <= PF_MAX_WORLD_HEIGHT;
    };
    const Size size = layer_size(composition, *layer);
    if (!fits(composition.width, composition.height)) wrong("a size outside 1 to 30000 pixels");
    if (!fits(size.width, size.height)) wrong("an effect layer with a size outside 1 to 30000 pixels");
}

}  // namespace

Session::State::State(const Plugin& loaded, Composition& shown, SessionOptions wanted)
    : plugin(loaded), in(shown, std::move(wanted)), utils(util_callbacks(in.options.handle_callbacks)) {}

Outcome Session::State::demand(PF_Cmd cmd) {
    Outcome outcome = command(cmd, frame);
    const bool only_shows = cmd == PF_Cmd_UPDATE_PARAMS_UI;
    if (outcome.error || outcome.thrown || !outcome.reports.empty() ||
        (outcome.message_is_error && !only_shows)) {
        throw PluginError(failure_text(plugin.path(), cmd, outcome));
    }
    return outcome;
}

Outcome Session::State::update_ui(double at) {
    if (!(global_flags & PF_OutFlag_SEND_UPDATE_PARAMS_UI)) return {};
    return command(PF_Cmd_UPDATE_PARAMS_UI, at);
}

Outcome Session::State::tell_of_change(int index, double at) {
    const Control& control = in.params.controls().at(static_cast<std::size_t>(index - 1));
    if (!(control.flags & PF_ParamFlag_SUPERVISE)) return {};
    return command(PF_Cmd_USER_CHANGED_PARAM, at, {}, index);
}

Session::Session(const Plugin& plugin, Composition& composition, SessionOptions options) {
    check_composition(composition);
    state_ = std::make_unique<State>(plugin, composition, std::move(options));
}

Session::~Session() {
    try {
        stop();
    } catch (const std::exception&) {
        // Whoever wants to hear of it calls stop().
    }
}

void Session::start() {
    State& s = *state_;
    s.in.log.clear();
    s.demand(PF_Cmd_GLOBAL_SETUP);
    s.demand(PF_Cmd_PARAMS_SETUP);
    if (s.restored) {
        try {
            s.sequence_data = s.in.memory.allocate(s.restored->size());
        } catch (const Misuse& misuse) {
            throw PluginError("the saved sequence data cannot be restored: " + misuse.what);
        }
        if (!s.restored->empty()) {
            std::memcpy(*s.sequence_data, s.restored->data(), s.restored->size());
        }
        s.demand(PF_Cmd_SEQUENCE_RESETUP);
    } else {
        s.demand(PF_Cmd_SEQUENCE_SETUP);
    }
    if (s.global_flags & PF_OutFlag_SEND_UPDATE_PARAMS_UI) s.demand(PF_Cmd_UPDATE_PARAMS_UI);
}

void Session::stop() {
    State& s = *state_;
    std::exception_ptr first;
    const auto end = [&](PF_Cmd cmd) {
        try {
            s.demand(cmd);
        } catch (const PluginError&) {
            if (!first) first = std::current_exception();
        }
    };
    if (!s.sequence_up && !s.global_up) return;
    s.in.log.clear();
    if (s.sequence_up) end(PF_Cmd_SEQUENCE_SETDOWN);
    s.sequence_up = false;
    if (s.global_up) end(PF_Cmd_GLOBAL_SETDOWN);
    s.global_up = s.params_up = false;
    if (first) std::rethrow_exception(first);
}

Outcome Session::send(PF_Cmd command) {
    State& s = *state_;
    s.in.log.clear();
    int changed = 0;
    for (const Control& control : s.in.params.controls()) {
        if (changed == 0 && (control.flags & PF_ParamFlag_SUPERVISE)) changed = control.index;
    }
    if (!is_render_command(command)) return s.command(command, s.frame, {}, changed);
    Outcome outcome;
    on_worker([&] { outcome = s.command(command, s.frame); });
    return outcome;
}

Outcome Session::call_inside(double frame, const Body& body) {
    State& s = *state_;
    s.in.log.clear();
    s.frame = frame;
    s.body = &body;
    const Outcome outcome = s.command(PF_Cmd_EVENT, frame);
    s.body = nullptr;
    return outcome;
}

const std::vector<Control>& Session::controls() const { return state_->in.params.controls(); }

void Session::apply_settings(const EffectSettings& settings) {
    std::vector<ResolvedSetting> resolved;
    for (const ControlSetting& setting : settings.controls) {
        resolved.push_back(resolve_setting(controls(), setting, state_->in.composition));
    }
    for (ResolvedSetting& setting : resolved) set_control(setting.index, std::move(setting.value));
}

void Session::set_control(int index, Animated<double> value) {
    state_->in.params.set(index, std::move(value));
}

double Session::control_at(int index, double frame) const {
    static_cast<void>(state_->in.params.value(index));  // is there such a control?
    return state_->in.params.at(index, frame);
}

Outcome Session::choose_layer(int index, LayerId layer, double frame) {
    State& s = *state_;
    s.in.params.set(index, Animated<double>(layer));
    s.in.log.clear();
    s.frame = frame;
    Outcome outcome = s.tell_of_change(index, frame);
    merge(outcome, s.update_ui(frame));
    return outcome;
}

bool Session::is_disabled(int index) const {
    const auto& all = controls();
    if (index < 1 || static_cast<std::size_t>(index) > all.size()) {
        throw ControlError("no control has index " + std::to_string(index));
    }
    return (all[static_cast<std::size_t>(index - 1)].ui_flags & PF_PUI_DISABLED) != 0;
}

Frame Session::render(double frame, const RenderSettings& settings) {
    State& s = *state_;
    if (!s.sequence_up) throw PluginError("a session is rendered between start() and stop()");
    for (const Ratio& ratio : {settings.downsample_x, settings.downsample_y}) {
        if (ratio.num <= 0 || ratio.den == 0 || ratio.value() > 1.0) {
            throw PluginError("a downsample factor is above 0 and at most 1");
        }
    }
    if (settings.depth == Depth::bits16 && !(s.global_flags & PF_OutFlag_DEEP_COLOR_AWARE)) {
        throw PluginError(s.plugin.path() + ": renders 8 bits per channel only");
    }
    s.in.log.clear();
    s.frame = frame;
    Frame result;
    result.depth = settings.depth;
    on_worker([&] {
        Outcome setup = s.command(PF_Cmd_FRAME_SETUP, frame, settings);
        if (setup.error || setup.thrown) {
            result.outcome = std::move(setup);
            return;
        }
        result.outcome = s.command(PF_Cmd_RENDER, frame, settings);
        result.width = s.in.output.width();
        result.height = s.in.output.height();
        result.argb = s.in.output.codes();
        std::vector<std::string>& reports = result.outcome.reports;
        reports.insert(reports.begin(), setup.reports.begin(), setup.reports.end());
        const Outcome setdown = s.command(PF_Cmd_FRAME_SETDOWN, frame, settings);
        reports.insert(reports.end(), setdown.reports.begin(), setdown.reports.end());
    });
    return result;
}

std::vector<std::uint8_t> Session::sequence_bytes() const {
    return state_->in.memory.bytes(state_->sequence_data);
}

void Session::restore_sequence(std::vector<std::uint8_t> bytes) {
    if (state_->sequence_up) throw PluginError("sequence data is restored before start()");
    if (!state_->in.options.handle_callbacks) {
        // The effect would dispose of the host's block by its own means.
        throw PluginError("sequence data cannot be restored without handle callbacks");
    }
    state_->restored = std::move(bytes);
}

const PF_OutData& Session::out_data() const { return state_->out; }
const std::vector<std::string>& Session::calls() const { return state_->in.log.names(); }
const std::vector<std::string>& Session::reports() const { return state_->reports; }
const std::vector<std::string>& Session::missed() const { return state_->in.ledger.missed(); }
const std::vector<std::string>& Session::suites() const { return state_->in.log.suites(); }
int Session::faults_met() const { return state_->in.log.faults_met(); }
void Session::set_faults(FaultPlan faults) { state_->in.set_faults(std::move(faults)); }

}  // namespace zam::host
