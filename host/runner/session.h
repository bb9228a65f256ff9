#pragma once
// One effect applied to one layer of one composition, driven through the C interface as After Effects drives
// it.
//
//     Plugin plugin("build/release/Zam.so");
//     Session session(plugin, composition, {});
//     session.start();                                  // GLOBAL_SETUP, PARAMS_SETUP, SEQUENCE_SETUP,
//     UPDATE_PARAMS_UI Frame frame = session.render(12, {.depth = Depth::bits16}); session.stop(); //
//     SEQUENCE_SETDOWN, GLOBAL_SETDOWN
//
// A session is used from one thread at a time; rows are iterated on `threads` threads. Nothing of the
// effect's own headers is known here.
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/composition/composition.h"
#include "host/runner/control.h"
#include "host/runner/plugin.h"
#include "host/watch/fault_plan.h"
#include "hostapi/effect.h"

namespace zam::host {

enum class Depth { bits8, bits16 };

// What one command did.
struct Outcome {
    PF_Err error = 0;               // what the entry point returned
    std::optional<int> thrown;      // an int exception that crossed the entry point instead
    std::string message;            // out_data->return_msg
    bool message_is_error = false;  // PF_OutFlag_DISPLAY_ERROR_MESSAGE
    PF_OutFlags out_flags = 0;
    std::vector<std::string> reports;  // what the command kept or misused, by name; empty when all is well
    [[nodiscard]] bool ok() const { return error == 0 && !thrown && reports.empty() && !message_is_error; }
};

struct RenderSettings {
    Depth depth = Depth::bits8;
    Ratio downsample_x{1, 1}, downsample_y{1, 1};  // 1/2 at half resolution
};

// Straight colour with alpha in the interface's channel order: alpha, red, green, blue. Full scale is 255 or
// 32768.
struct Frame {
    int width = 0, height = 0;
    Depth depth = Depth::bits8;
    std::vector<std::uint16_t> argb;  // 4 codes per pixel, rows from the top, no padding
    Outcome outcome;
};

struct SessionOptions {
    int threads = 0;  // 0: one per core this process may use
    PF_SpecVersion api_version{13, 29};
    bool handle_callbacks = true;              // false: the four host_*_handle callbacks are null
    bool basic_suite = true;                   // false: pica_basicP is null
    bool move_unlocked_handles = false;        // blocks move whenever their last lock goes
    std::vector<std::string> withheld_suites;  // "AEGP Light Suite 1": name and wire version
    FaultPlan faults;                          // which host calls fail, and with what
};

class Session {
  public:
    // Keeps references: plug-in and composition must outlive the session. The effect may change the
    // composition.
    Session(const Plugin& plugin, Composition& composition, SessionOptions options);
    ~Session();  // stops the session if that was not done
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    // Whole life cycle; throw PluginError when the plug-in answers with an error or against the rules.
    void start();
    void stop();

    // Single commands, for tests. Session fills in_data, params, output and extra as the interface promises.
    Outcome send(PF_Cmd command);

    // The controls as the plug-in registered them, index 1 first; the input layer is not among them.
    [[nodiscard]] const std::vector<Control>& controls() const;

    // Sets the controls of the composition's effect settings; throws ControlError (control.h) naming the
    // setting.
    void apply_settings(const EffectSettings& settings);
    void set_control(int index,
                     Animated<double> value);  // sliders in user units, popups 1-based, boxes 0/1, layer ids
    // As the user picking a layer in a layer control: USER_CHANGED_PARAM when supervised, then
    // UPDATE_PARAMS_UI.
    Outcome choose_layer(int index, LayerId layer, double frame);
    // Greyed out by the effect's last control update.
    [[nodiscard]] bool is_disabled(int index) const;

    // FRAME_SETUP, RENDER, FRAME_SETDOWN. The outcome is that of RENDER.
    Frame render(double frame, const RenderSettings& settings);

    // The flat sequence data, and its restoration (SEQUENCE_RESETUP instead of SEQUENCE_SETUP at start()).
    [[nodiscard]] std::vector<std::uint8_t> sequence_bytes() const;
    void restore_sequence(std::vector<std::uint8_t> bytes);

    [[nodiscard]] const PF_OutData& out_data() const;  // as the last command left it
    [[nodiscard]] const std::vector<std::string>& calls()
        const;  // every host call of the last command, in order
    void set_faults(FaultPlan faults);

  private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace zam::host
