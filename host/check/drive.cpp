#include "host/check/drive.h"

#include <algorithm>
#include <set>

#include "host/check/check_scene.h"
#include "host/check/journal.h"
#include "host/runner/instance.h"
#include "host/runner/session.h"

namespace zam::host {
namespace {

constexpr int kThreads = 4;
constexpr int kThreadedRounds = 3;  // a race does not show every time
constexpr std::chrono::microseconds kRowPause{50};
constexpr std::uint8_t kOtherByte = 0x3C;

// Which check a report of the host's watch belongs to, by what it says.
Check check_of_report(const std::string& report) {
    static constexpr std::pair<const char*, Check> kPhrases[] = {
        {"in add_param: name without", Check::control_names},
        {"is used twice", Check::control_ids},
        {"choices announced", Check::control_ranges},
        {"default outside the valid range", Check::control_ranges},
        {"set num_params", Check::control_count},
        {"return_msg without", Check::messages},
        {"left the entry point", Check::exceptions},
        {"a row threw", Check::exceptions},
        {"a handle's block", Check::inside_blocks},
        {" wrote ", Check::inside_rows},
        {" held after ", Check::given_back},
        {" locked after ", Check::given_back},
    };
    for (const auto& [phrase, check] : kPhrases)
        if (report.find(phrase) != std::string::npos) return check;
    return Check::valid_calls;
}

bool above_full_scale(const Frame& frame) {
    return frame.depth == Depth::bits16 &&
           std::any_of(frame.argb.begin(), frame.argb.end(),
                       [](std::uint16_t code) { return code > PF_MAX_CHAN16; });
}

// Places of pixels that still are as an image of this byte starts.
std::set<std::size_t> untouched(const Frame& frame, std::uint8_t byte) {
    std::set<std::size_t> places;
    const auto start = static_cast<std::uint16_t>(frame.depth == Depth::bits16 ? byte << 8 | byte : byte);
    for (std::size_t i = 0; i + 3 < frame.argb.size(); i += 4)
        if (std::all_of(&frame.argb[i], &frame.argb[i] + 4,
                        [&](std::uint16_t code) { return code == start; }))
            places.insert(i / 4);
    return places;
}

// One session from GLOBAL_SETUP to GLOBAL_SETDOWN.
class Life {
  public:
    Life(const Plugin& plugin, JournalWriter& journal, std::string name, SessionOptions options)
        : journal_(journal), name_(std::move(name)), session_(plugin, scene_, std::move(options)) {}

    // False when a command failed that the others build on.
    bool start() {
        if (!send(PF_Cmd_GLOBAL_SETUP)) return false;
        const PF_OutData& out = session_.out_data();
        words_ = {out.my_version, static_cast<std::uint32_t>(out.out_flags),
                  static_cast<std::uint32_t>(out.out_flags2)};
        global_up_ = true;
        sequence_up_ = send(PF_Cmd_PARAMS_SETUP) && send(PF_Cmd_SEQUENCE_SETUP);
        return sequence_up_ && update_controls();
    }

    // What a host sends between frames.
    void send_the_rest() {
        send(PF_Cmd_ABOUT);
        const auto& controls = session_.controls();
        const auto supervised = std::find_if(controls.begin(), controls.end(), [](const Control& control) {
            return (control.flags & PF_ParamFlag_SUPERVISE) != 0;
        });
        if (supervised != controls.end() && supervised->type == PF_Param_LAYER) {
            stage("picking a layer");
            take(session_.choose_layer(supervised->index, kCheckWall, 0.0), "picking a layer");
        } else if (supervised != controls.end()) {
            send(PF_Cmd_USER_CHANGED_PARAM);
            update_controls();
        }
        send(PF_Cmd_SEQUENCE_FLATTEN);
        send(PF_Cmd_SEQUENCE_RESETUP);
    }

    // Empty when the effect answered with an error.
    Frame render(Depth depth) {
        const std::string what =
            depth == Depth::bits8 ? "PF_Cmd_RENDER at 8 bits" : "PF_Cmd_RENDER at 16 bits";
        stage(what);
        Frame frame = session_.render(0.0, {.depth = depth});
        if (!take(frame.outcome, what)) frame.argb.clear();
        return frame;
    }

    void stop() {
        if (sequence_up_) send(PF_Cmd_SEQUENCE_SETDOWN);
        if (global_up_) send(PF_Cmd_GLOBAL_SETDOWN);
        sequence_up_ = global_up_ = false;
    }

    [[nodiscard]] const ReportedWords& words() const { return words_; }
    [[nodiscard]] bool deep() const { return (words_.out_flags & PF_OutFlag_DEEP_COLOR_AWARE) != 0; }

  private:
    void stage(const std::string& what) { journal_.stage(what + name_); }

    bool send(PF_Cmd command) {
        const std::string what = Instance::name_of(command);
        stage(what);
        return take(session_.send(command), what);
    }
    bool update_controls() {
        return !(words_.out_flags & PF_OutFlag_SEND_UPDATE_PARAMS_UI) || send(PF_Cmd_UPDATE_PARAMS_UI);
    }

    // An error, once the effect has asked for something that this host does not have, is nobody's fault.
    bool take(const Outcome& outcome, const std::string& what) {
        for (const std::string& report : outcome.reports) {
            if (report.starts_with("control type "))
                excuses_.push_back(report);
            else
                journal_.fail(check_of_report(report), report);
        }
        std::string missing;
        for (const auto& list : {session_.missed(), excuses_})
            for (const std::string& each : list) missing += (missing.empty() ? "" : ", ") + each;
        const auto blame = [&](Check check, const std::string& text) {
            if (missing.empty())
                journal_.fail(check, text);
            else
                journal_.skip(check,
                              text + ", but it had asked for what this host does not have: " + missing);
        };
        const std::string message =
            outcome.message.empty() ? "" : ", message \"" + outcome.message.substr(0, 80) + "\"";
        if (outcome.thrown)
            blame(Check::exceptions, what + " threw the int " + std::to_string(*outcome.thrown));
        if (outcome.error)
            blame(Check::commands, what + " answered " + std::to_string(outcome.error) + message);
        else if (outcome.message_is_error)
            blame(Check::commands, what + " shows an error" + message);
        const bool threw =
            std::any_of(outcome.reports.begin(), outcome.reports.end(),
                        [](const std::string& r) { return check_of_report(r) == Check::exceptions; });
        return !outcome.error && !outcome.thrown && !threw;
    }

    JournalWriter& journal_;
    std::string name_;
    Composition scene_ = check_scene();
    Session session_;
    ReportedWords words_;
    bool global_up_ = false, sequence_up_ = false;
    std::vector<std::string> excuses_;
};

class Driver {
  public:
    Driver(const Plugin& plugin, JournalWriter& journal) : plugin_(plugin), journal_(journal) {}

    void run() {
        Life life(plugin_, journal_, "", {.threads = 1});
        if (!life.start()) {
            life.stop();
            return give_up("the life cycle ended early");
        }
        journal_.words(life.words());
        life.send_the_rest();
        if (life.words().out_flags2 & PF_OutFlag2_SUPPORTS_SMART_RENDER) {
            skip_images("it renders by PF_Cmd_SMART_RENDER, which this host does not send");
        } else if (render_single(life)) {
            render_threaded();
        } else {
            skip_images("no frame was rendered");
        }
        life.stop();
    }

  private:
    static constexpr Check kImageChecks[] = {Check::inside_rows, Check::pixels, Check::repeats,
                                             Check::threads};

    void skip_images(const std::string& reason) {
        for (const Check check : kImageChecks) journal_.skip(check, reason);
    }
    void give_up(const std::string& reason) {
        for (int i = static_cast<int>(Check::commands); i < static_cast<int>(Check::count_); ++i)
            journal_.skip(static_cast<Check>(i), reason);
    }

    // Keeps the frames that the others are held against.
    bool render_single(Life& life) {
        for (const Depth depth : {Depth::bits8, Depth::bits16}) {
            if (depth == Depth::bits16 && !life.deep()) continue;
            Frame frame = life.render(depth);
            const Frame again = life.render(depth);
            if (frame.argb.empty() || again.argb.empty()) return false;
            if (frame.argb != again.argb)
                journal_.fail(Check::repeats, "two frames at " + bits(depth) + " differ");
            if (above_full_scale(frame) && untouched(frame, kDirtyByte).empty())
                journal_.fail(Check::pixels, "a channel is above 32768, full scale at 16 bits");
            if (!untouched(frame, kDirtyByte).empty()) find_untouched(frame);
            frames_.push_back(std::move(frame));
        }
        return true;
    }

    // A pixel may happen to be drawn as it started; it does not do so from two different starts.
    void find_untouched(const Frame& first) {
        Life life(plugin_, journal_, " over another image", {.threads = 1, .output_byte = kOtherByte});
        if (!life.start()) return;
        const Frame other = life.render(first.depth);
        const auto before = untouched(first, kDirtyByte), now = untouched(other, kOtherByte);
        const auto left =
            std::count_if(before.begin(), before.end(), [&](std::size_t at) { return now.contains(at); });
        if (left)
            journal_.fail(Check::pixels, std::to_string(left) + " pixels at " + bits(first.depth) +
                                             " are left as they were; hosts do not clear the output");
        life.stop();
    }

    void render_threaded() {
        Life life(plugin_, journal_, " with rows on 4 threads",
                  {.threads = kThreads, .row_pause = kRowPause});
        if (!life.start()) return;
        for (const Frame& single : frames_)
            for (int round = 0; round < kThreadedRounds; ++round) {
                const Frame frame = life.render(single.depth);
                const std::size_t count = std::min(frame.argb.size(), single.argb.size());
                std::size_t differ = single.argb.size() - count;
                for (std::size_t i = 0; i < count; ++i) differ += frame.argb[i] != single.argb[i];
                if (differ)
                    journal_.fail(Check::threads, std::to_string(differ) + " values of a frame at " +
                                                      bits(single.depth) +
                                                      " differ from those on one thread");
            }
        life.stop();
    }

    static std::string bits(Depth depth) { return depth == Depth::bits8 ? "8 bits" : "16 bits"; }

    const Plugin& plugin_;
    JournalWriter& journal_;
    std::vector<Frame> frames_;
};

}  // namespace

void drive_plugin(const std::string& library, const std::string& entry, const std::string& journal_file) {
    JournalWriter journal(journal_file);
    try {
        journal.stage("loading");
        const Plugin plugin(library, entry);
        journal.pass(Check::loads);
        Driver(plugin, journal).run();
        journal.stage("unloading");
    } catch (const PluginError& error) {
        journal.fail(Check::loads, error.what());
        for (int i = static_cast<int>(Check::survives); i < static_cast<int>(Check::count_); ++i)
            journal.skip(static_cast<Check>(i), "it was not loaded");
    }
    journal.done();
}

}  // namespace zam::host
