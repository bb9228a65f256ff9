#include "host/runner/instance.h"

#include "host/composition/queries.h"
#include "host/composition/transforms.h"
#include "host/suites/times.h"

namespace zam::host {
namespace {

std::uint64_t number(const void* handle) { return reinterpret_cast<std::uintptr_t>(handle); }

}  // namespace

constinit const LayerHandles Instance::kNoLayers;
constinit thread_local Instance* Instance::running_ = nullptr;
constinit thread_local const LayerHandles* Instance::layers_at_hand_ = &kNoLayers;

Instance::Instance(Composition& shown, SessionOptions wanted)
    : composition(shown), options(std::move(wanted)), rows(options.threads) {
    handles_.next_command(keys, comp_handle());
    set_faults(options.faults);
    record_calls(options.record_calls);
    memory.move_when_unlocked(options.move_unlocked_handles);
}

void Instance::attend(bool on) {
    if (attended == on) return;
    attended = on;
    handles_.withhold(on);
}

void Instance::set_faults(FaultPlan plan) {
    log.set_plan(std::move(plan));
    attend(log.listening());
}

void Instance::record_calls(bool on) {
    log.record(on);
    attend(log.listening());
}

AEGP_LayerH Instance::handle(const Layer& layer) {
    return layer_at(static_cast<A_long>(&layer - composition.layers.data()));
}

AEGP_LayerH Instance::layer_at(A_long index) {
    handles_.gather(composition);
    const AEGP_LayerH found = handles_.look_at(static_cast<std::uint32_t>(index));
    if (!found) throw Refusal{A_Err_PARAMETER};
    return found;
}

const LayerHandles::Facts& Instance::facts(AEGP_LayerH handle) {
    const std::uint32_t number = keys.payload(HandleKind::layer, handle);
    handles_.gather(composition);
    const LayerHandles::Facts* found = handles_.look(number);
    if (!found) throw HandleKeys::misuse("expired ", HandleKind::layer);  // deleted meanwhile
    return *found;
}

AEGP_CompH Instance::comp_handle() const { return keys.make<AEGP_CompH>(HandleKind::comp, 1); }

AEGP_ItemH Instance::item_handle(ItemId id) const {
    return keys.make<AEGP_ItemH>(HandleKind::item, static_cast<std::uint32_t>(id));
}

Layer& Instance::layer(AEGP_LayerH handle) {
    const auto stands = [this](const LayerHandles::Facts& facts) {
        const auto place = static_cast<std::size_t>(facts.place);
        return place < composition.layers.size() && composition.layers[place].id == facts.id;
    };
    if (!stands(facts(handle))) changed();  // by somebody who did not say so
    return composition.layers[static_cast<std::size_t>(facts(handle).place)];
}

void Instance::check(AEGP_CompH handle) const { (void)keys.payload(HandleKind::comp, handle); }

ItemId Instance::item(AEGP_ItemH handle) const {
    const auto id = static_cast<ItemId>(keys.payload(HandleKind::item, handle));
    if (id != kCompItem && !composition.find_item(id)) throw HandleKeys::misuse("expired ", HandleKind::item);
    return id;
}

void Instance::check(PF_ProgPtr effect_ref) const { (void)keys.payload(HandleKind::instance, effect_ref); }

Layer& Instance::effect_layer() {
    Layer* found = layers.find(composition, composition.effect.layer);
    if (!found) throw Refusal{A_Err_GENERIC};
    return *found;
}

AEGP_StreamRefH Instance::lend_stream(StreamTarget target, std::string_view call) {
    streams_.push_back(target);
    const auto stream =
        keys.make<AEGP_StreamRefH>(HandleKind::stream, static_cast<std::uint32_t>(streams_.size() - 1));
    ledger.lend(Loan::stream, number(stream), call);
    return stream;
}

StreamTarget Instance::stream(AEGP_StreamRefH handle) const {
    const std::uint32_t place = keys.payload(HandleKind::stream, handle);
    if (place >= streams_.size() || !ledger.is_out(Loan::stream, number(handle))) {
        throw HandleKeys::misuse("expired ", HandleKind::stream);
    }
    return streams_[place];
}

AEGP_EffectRefH Instance::lend_effect(std::string_view call) {
    const auto effect = keys.make<AEGP_EffectRefH>(HandleKind::effect, effects_++);
    ledger.lend(Loan::effect, number(effect), call);
    return effect;
}

void Instance::check(AEGP_EffectRefH handle) const {
    (void)keys.payload(HandleKind::effect, handle);
    if (!ledger.is_out(Loan::effect, number(handle)))
        throw HandleKeys::misuse("expired ", HandleKind::effect);
}

double Instance::frame(const A_Time* time) const {
    if (!time) throw Misuse{"null time", PF_Err_BAD_CALLBACK_PARAM};
    if (time->scale == 0) throw Misuse{"time with scale 0", PF_Err_BAD_CALLBACK_PARAM};
    return frame_of_time(composition.frame_rate, *time);
}

A_Time Instance::time(double frame) const { return time_of_frame(composition.frame_rate, frame); }

double Instance::frame(const Layer& layer, AEGP_LTimeMode mode, const A_Time* time) const {
    const double given = frame(time);
    if (mode == AEGP_LTimeMode_CompTime) return given;
    if (mode == AEGP_LTimeMode_LayerTime) return comp_frame(layer, given);
    throw Misuse{"unknown time mode", PF_Err_BAD_CALLBACK_PARAM};
}

Matrix Instance::world_from_layer(const Layer& layer, double frame) {
    return zam::host::world_from_layer(layer, frame, composition.layers.size(),
                                       [this](LayerId id) { return layers.find(composition, id); });
}

bool Instance::video_really_on(const Layer& layer) {
    if (!some_solo_) some_solo_ = any_solo(composition);
    return zam::host::video_really_on(layer, *some_solo_);
}

void Instance::must_be_changeable() const {
    if (command == PF_Cmd_RENDER || command == PF_Cmd_FRAME_SETUP || command == PF_Cmd_FRAME_SETDOWN) {
        throw Misuse{"change of the project while rendering", A_Err_CONST_PROJECT_MODIFICATION};
    }
}

void Instance::must_allow_new_streams() const {
    if (command == PF_Cmd_RENDER) throw Misuse{"stream reference while rendering", A_Err_WRONG_THREAD};
}

void Instance::begin(PF_Cmd new_command, double frame) {
    command = new_command;
    command_frame = frame;
    keys.next_command();
    streams_.clear();
    handles_.next_command(keys, comp_handle());
    changed();  // between commands the composition is the application's
    ledger.begin(name_of(new_command));
}

World& Instance::world(const PF_EffectWorld* shown, const char* which) {
    if (!shown) throw Misuse{std::string("null ") + which, PF_Err_BAD_CALLBACK_PARAM};
    if (command == PF_Cmd_RENDER) {
        if (shown == &output_world) return output;
        if (shown == params.shown_input()) return input;
    }
    throw Misuse{std::string("foreign ") + which, PF_Err_BAD_CALLBACK_PARAM};
}

const char* Instance::name_of(PF_Cmd command) {
    static constexpr const char* kNames[] = {"PF_Cmd_ABOUT",
                                             "PF_Cmd_GLOBAL_SETUP",
                                             "PF_Cmd_UNUSED_0",
                                             "PF_Cmd_GLOBAL_SETDOWN",
                                             "PF_Cmd_PARAMS_SETUP",
                                             "PF_Cmd_SEQUENCE_SETUP",
                                             "PF_Cmd_SEQUENCE_RESETUP",
                                             "PF_Cmd_SEQUENCE_FLATTEN",
                                             "PF_Cmd_SEQUENCE_SETDOWN",
                                             "PF_Cmd_DO_DIALOG",
                                             "PF_Cmd_FRAME_SETUP",
                                             "PF_Cmd_RENDER",
                                             "PF_Cmd_FRAME_SETDOWN",
                                             "PF_Cmd_USER_CHANGED_PARAM",
                                             "PF_Cmd_UPDATE_PARAMS_UI",
                                             "PF_Cmd_EVENT"};
    return command >= 0 && command <= PF_Cmd_EVENT ? kNames[command] : "an unknown command";
}

}  // namespace zam::host
