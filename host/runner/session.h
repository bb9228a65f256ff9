#pragma once
// One effect applied to one layer of one composition, driven through the C interface as After Effects drives
// it.
//
//     Plugin plugin("build/release/Zam.so");
//     Session session(plugin, composition, {});
//     session.start();  // GLOBAL_SETUP, PARAMS_SETUP, SEQUENCE_SETUP, UPDATE_PARAMS_UI
//     session.apply_settings(composition.effect);
//     Frame frame = session.render(12, {.depth = Depth::bits16});
//     session.stop();  // SEQUENCE_SETDOWN, GLOBAL_SETDOWN
//
// A session is used from one thread at a time; several sessions may work at once, on one plug-in or on
// several. Rows are iterated on `threads` threads, frames are rendered on a thread of their own, everything
// else runs on the caller's. Nothing of the effect's own headers is known here.
#include <chrono>
#include <cstdint>
#include <functional>
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
    std::vector<std::string> reports;   // what the command kept or misused, by name; empty when all is well
    std::vector<int> changed_controls;  // that the effect marked with PF_ChangeFlag_CHANGED_VALUE
    std::vector<int> ui_updates;        // controls that PF_UpdateParamUI was called for, in order
    [[nodiscard]] bool ok() const { return error == 0 && !thrown && reports.empty() && !message_is_error; }
};

struct RenderSettings {
    Depth depth = Depth::bits8;
    Ratio downsample_x{1, 1}, downsample_y{1, 1};  // 1/2 at half resolution; sizes are rounded up
};

// How the rows of an image lie in memory.
struct RowLayout {
    int padding = 24;  // bytes that are no pixels from row to row, at least; rounded up to whole 8 bytes
    bool bottom_up = false;  // the last row lies first: the way from row to row is negative
};

// Straight colour with alpha in the interface's channel order: alpha, red, green, blue. Full scale is 255 or
// 32768.
struct Frame {
    int width = 0, height = 0;
    Depth depth = Depth::bits8;
    std::vector<std::uint16_t> argb;  // 4 codes per pixel, rows from the top, no padding
    Outcome outcome;
};

constexpr std::uint8_t kDirtyByte = 0xA5;  // in 16 bits per channel above full scale

struct SessionOptions {
    int threads = 0;  // 0: one per core this process may use
    PF_SpecVersion api_version{13, 29};
    bool handle_callbacks = true;            // false: the four host_*_handle callbacks are null
    bool basic_suite = true;                 // false: pica_basicP is null
    bool move_unlocked_handles = false;      // blocks move whenever their last lock goes
    std::chrono::microseconds row_pause{0};  // before each row, so that even quick rows meet several threads
    std::uint8_t output_byte = kDirtyByte;   // that output pixels start as
    RowLayout row_layout{};                  // of input and output
    LightType new_light_type = LightType::spot;  // of the lights that the effect creates
    // Is the frame no longer wanted? Asked by the effect, and before each row on whatever thread takes it; true answers
    // them PF_Interrupt_CANCEL. Must not throw.
    std::function<bool()> cancelled{};
    // Has the last word on what a command is given, for tests of values that no composition leads to.
    std::function<void(PF_InData&)> amend_in_data{};
    std::vector<std::string> withheld_suites{};  // "AEGP Light Suite 1": name and wire version
    FaultPlan faults{};                          // which host calls fail, and with what
    bool record_calls = false;                   // for calls(); it costs time
};

class Session {
  public:
    // Keeps references: plug-in and composition must outlive the session. The effect may change the
    // composition. Throws PluginError for a composition that no effect can be applied to.
    Session(const Plugin& plugin, Composition& composition, SessionOptions options);
    ~Session();  // stops the session if that was not done
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    // Whole life cycle; throw PluginError when the plug-in answers with an error or against the rules. A
    // message that the first PF_Cmd_UPDATE_PARAMS_UI shows is no such error. stop() sends what is left to be
    // sent, also after a start() that failed.
    void start();
    void stop();

    // Single commands, for tests. Session fills in_data, params, output and extra as the interface promises,
    // for the frame of the last render or choice; PF_Cmd_USER_CHANGED_PARAM speaks of the first supervised
    // control.
    Outcome send(PF_Cmd command);

    // Calls `body` as a command of this effect at this frame, in place of the entry point: for what else a
    // plug-in exports that takes in_data. Its result is the outcome's error.
    using Body = std::function<PF_Err(PF_InData*, PF_OutData*)>;
    Outcome call_inside(double frame, const Body& body);

    // The controls as the plug-in registered them, index 1 first; the input layer is not among them.
    [[nodiscard]] const std::vector<Control>& controls() const;

    // Sets controls as a scene gives them, after start(): throws ControlError (control.h) naming the setting,
    // and then has set none. Sends no command: for a supervised layer control choose_layer() has to follow,
    // and PF_Cmd_UPDATE_PARAMS_UI greys the others anew.
    void apply_settings(const EffectSettings& settings);
    // Sliders in user units, popups 1-based, boxes 0/1, layers by id. Values outside a control's range are
    // clamped when they are used. Sends no command; throws ControlError for an index without a value.
    void set_control(int index, Animated<double> value);
    // What a control has at a frame, in the same units; throws ControlError for an index without a value.
    [[nodiscard]] double control_at(int index, double frame) const;
    // As the user picking a layer in a layer control: USER_CHANGED_PARAM when supervised, then
    // UPDATE_PARAMS_UI. The outcome is that of both: the first error and message, all reports.
    Outcome choose_layer(int index, LayerId layer, double frame);
    // Greyed out by the effect's last control update.
    [[nodiscard]] bool is_disabled(int index) const;

    // FRAME_SETUP, RENDER, FRAME_SETDOWN. The outcome is that of RENDER, with the reports of all three; an
    // error of FRAME_SETUP ends it there and leaves the image empty.
    Frame render(double frame, const RenderSettings& settings);

    // The flat sequence data (empty when the effect got it elsewhere than from the host), and its
    // restoration: before start(), which then sends SEQUENCE_RESETUP instead of SEQUENCE_SETUP.
    [[nodiscard]] std::vector<std::uint8_t> sequence_bytes() const;
    void restore_sequence(std::vector<std::uint8_t> bytes);

    [[nodiscard]] const PF_OutData& out_data() const;  // as the last command left it
    // Every host call of the last of the functions above that sent commands, in order; none without record_calls.
    [[nodiscard]] const std::vector<std::string>& calls() const;
    // What all commands so far kept or misused, in order.
    [[nodiscard]] const std::vector<std::string>& reports() const;
    // What the effect asked for and this host does not have: suites and calls, each once.
    [[nodiscard]] const std::vector<std::string>& missed() const;
    // The suites asked for in those calls: "AEGP Light Suite 1".
    [[nodiscard]] const std::vector<std::string>& suites() const;
    void set_faults(FaultPlan faults);  // counts calls from now on
    // How many of them the effect has met, also as results that were spoilt.
    [[nodiscard]] int faults_met() const;

  private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace zam::host
