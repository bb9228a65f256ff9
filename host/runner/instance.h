#pragma once
// All that the host has for one applied effect. Callbacks carry no context, or one that only the effect
// vouches for; they find the instance whose command is running on their thread.
#include <atomic>
#include <mutex>
#include <optional>
#include <vector>

#include "host/composition/layer_index.h"
#include "host/composition/matrix.h"
#include "host/runner/handle_keys.h"
#include "host/runner/layer_handles.h"
#include "host/runner/params_store.h"
#include "host/runner/row_pool.h"
#include "host/runner/session.h"
#include "host/runner/worlds.h"
#include "host/watch/call_log.h"
#include "host/watch/ledger.h"
#include "host/watch/memory_blocks.h"
#include "hostapi/scene_values.h"

namespace zam::host {

// What a stream reference stands for: a layer's stream, or a control of the effect.
struct StreamTarget {
    LayerId layer = 0;  // 0: a control
    std::int32_t number = 0;
};

class Instance {
  public:
    Instance(Composition& shown, SessionOptions wanted);

    // The instance whose command runs on this thread; null outside of commands.
    static Instance* current() { return running_; }
    class Scope {  // makes one current while it lives
      public:
        explicit Scope(Instance* instance) : before_(running_) { enter(instance); }
        ~Scope() { enter(before_); }
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;

      private:
        static void enter(Instance* instance) {
            running_ = instance;
            layers_at_hand_ = instance ? &instance->handles_ : &kNoLayers;
        }
        Instance* before_;
    };

    // Calls are noted and may be made to fail (log), or come from several threads (gate) while rows are iterated.
    std::atomic<bool> attended{false};  // changes only while one thread alone makes calls
    class SeveralThreads {              // while it lives
      public:
        explicit SeveralThreads(Instance& in) : in_(in), before_(in.attended) { in_.attend(true); }
        ~SeveralThreads() { in_.attend(before_); }
        SeveralThreads(const SeveralThreads&) = delete;
        SeveralThreads& operator=(const SeveralThreads&) = delete;

      private:
        Instance& in_;
        bool before_;
    };
    void set_faults(FaultPlan plan);
    void record_calls(bool on);

    // How the results of the call that is being served are to be spoilt; null: not at all.
    const Fault* spoiling = nullptr;
    class Spoiling {  // while it lives
      public:
        Spoiling(Instance& in, const Fault& fault) : in_(in), fault_(fault) {
            if (fault_.results != Fault::Results::untouched) in_.spoiling = &fault_;
        }
        ~Spoiling() {
            if (in_.spoiling == &fault_) in_.spoiling = nullptr;
        }
        Spoiling(const Spoiling&) = delete;
        Spoiling& operator=(const Spoiling&) = delete;

      private:
        Instance& in_;
        const Fault fault_;
    };

    // Handles out and in. All of these throw Misuse for handles and times that are no good.
    [[nodiscard]] AEGP_LayerH handle(const Layer& layer);
    [[nodiscard]] AEGP_LayerH layer_at(A_long index);
    [[nodiscard]] const LayerHandles::Facts& facts(AEGP_LayerH handle);

    // For the calls that walks are made of: what is at hand there needs no further check, for nobody attends.
    static const LayerHandles& layers_at_hand() { return *layers_at_hand_; }
    [[nodiscard]] AEGP_CompH comp_handle() const;
    [[nodiscard]] AEGP_ItemH item_handle(ItemId id) const;  // kCompItem: the composition itself
    [[nodiscard]] Layer& layer(AEGP_LayerH handle);
    void check(AEGP_CompH handle) const;
    [[nodiscard]] ItemId item(AEGP_ItemH handle) const;
    void check(PF_ProgPtr effect_ref) const;
    [[nodiscard]] Layer& effect_layer();

    [[nodiscard]] AEGP_StreamRefH lend_stream(StreamTarget target, std::string_view call);
    [[nodiscard]] StreamTarget stream(AEGP_StreamRefH handle) const;
    [[nodiscard]] AEGP_EffectRefH lend_effect(std::string_view call);
    void check(AEGP_EffectRefH handle) const;

    [[nodiscard]] double frame(
        const A_Time* time) const;  // comp frame of a time; null and scale 0 are misuse
    [[nodiscard]] A_Time time(double frame) const;
    // Comp frame of a time that is in comp or in layer time.
    [[nodiscard]] double frame(const Layer& layer, AEGP_LTimeMode mode, const A_Time* time) const;
    [[nodiscard]] Matrix world_from_layer(const Layer& layer, double frame);
    [[nodiscard]] bool video_really_on(const Layer& layer);

    // While a frame is rendered the project stands still: throws Misuse.
    void must_be_changeable() const;
    void must_allow_new_streams() const;
    // After any change to layers: forgets what was remembered of them.
    void changed() {
        some_solo_.reset();
        handles_.changed();
    }

    // Is the command no longer wanted? On any thread.
    [[nodiscard]] bool cancelled() const { return options.cancelled && options.cancelled(); }

    void begin(PF_Cmd command, double frame);

    static constexpr ItemId kCompItem = -1;
    static const char* name_of(PF_Cmd command);

    std::mutex gate;  // while attended: one callback at a time, but for iterate's rows
    Composition& composition;
    const SessionOptions options;
    CallLog log;
    Ledger ledger;
    MemoryBlocks memory{ledger};
    HandleKeys keys;
    LayerIndex layers;
    ParamsStore params;
    RowPool rows;
    World output, input;
    PF_EffectWorld output_world{};  // as the effect sees it
    PF_InData in_data{};
    PF_Cmd command = PF_Cmd_ABOUT;
    double command_frame = 0.0;  // composition frame of the command

    // The world behind a pointer that this command gave to the effect; throws Misuse for any other.
    [[nodiscard]] World& world(const PF_EffectWorld* shown, const char* which);

  private:
    void attend(bool on);

    // The model spares each call a call.
    [[gnu::tls_model("initial-exec")]] static constinit thread_local Instance* running_;
    [[gnu::tls_model("initial-exec")]] static constinit thread_local const LayerHandles* layers_at_hand_;
    static const LayerHandles kNoLayers;
    LayerHandles handles_;
    std::vector<StreamTarget> streams_;  // of this command, by payload
    std::uint32_t effects_ = 0;
    std::optional<bool> some_solo_;
};

}  // namespace zam::host
