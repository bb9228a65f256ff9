#include "host/check/check_plugin.h"

#include <cstdio>
#include <filesystem>
#include <random>

#include "host/check/child_process.h"
#include "host/check/drive.h"
#include "host/check/journal.h"
#include "hostapi/constants.h"

namespace zam::host {
namespace fs = std::filesystem;
namespace {

// A folder of our own that is gone with this object.
class ScratchFolder {
  public:
    ScratchFolder() {
        std::random_device random;
        do {
            path_ = fs::temp_directory_path() /
                    ("zam-check-" + std::to_string(this_process()) + "-" + std::to_string(random()));
        } while (!fs::create_directory(path_));
        fs::permissions(path_, fs::perms::owner_all);
    }
    ~ScratchFolder() {
        std::error_code error;
        fs::remove_all(path_, error);
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    [[nodiscard]] std::string file(const char* name) const { return (path_ / name).string(); }

  private:
    fs::path path_;
};

void skip_from(Check first, const std::string& reason, Report& report) {
    for (int i = static_cast<int>(first); i < static_cast<int>(Check::count_); ++i)
        report.skip(static_cast<Check>(i), reason);
}

void compare_words(const ReportedWords& named, const ReportedWords& reported, Report& report) {
    if (named.out_flags & PF_OutFlag_PiPL_OVERRIDES_OUTDATA_OUTFLAGS)
        return report.skip(Check::same_words,
                           "by its flags the property resource overrides what is reported");
    const auto compare = [&](const char* what, std::uint32_t in_list, std::uint32_t in_code) {
        char text[128];
        std::snprintf(text, sizeof text, "%s: 0x%08X in the property resource, 0x%08X reported", what,
                      static_cast<unsigned>(in_list), static_cast<unsigned>(in_code));
        if (in_list != in_code) report.fail(Check::same_words, text);
    };
    compare("version", named.version, reported.version);
    compare("out_flags", named.out_flags, reported.out_flags);
    compare("out_flags2", named.out_flags2, reported.out_flags2);
    report.pass(Check::same_words);
}

void drive(const CheckPlan& plan, const StaticResult& known, Report& report) {
    const ScratchFolder folder;
    const std::string journal = folder.file("journal");
    ChildEnd child{ChildEnd::How::exited, 0, ""};
    if (plan.in_process) {
        drive_plugin(known.library, known.entry, journal);
    } else {
        std::vector<std::string> command = plan.child_command;
        command.insert(command.end(), {known.library, known.entry, journal});
        child = run_child(command, plan.limit);
    }
    const JournalEnd end = read_journal(journal, report);
    if (child.how == ChildEnd::How::exited && end.stage.empty())
        child = {ChildEnd::How::not_started, 0, "it ended with code " + std::to_string(child.code)};
    if (child.how == ChildEnd::How::not_started)
        return skip_from(Check::loads, "its process could not be started: " + child.what, report);
    const std::string where = end.stage.empty() ? " before it was loaded" : " in " + end.stage;
    switch (child.how) {
        case ChildEnd::How::not_started:
            break;
        case ChildEnd::How::crashed:
            report.fail(Check::survives, child.what + where);
            break;
        case ChildEnd::How::timed_out:
            report.fail(Check::survives,
                        "still busy after " + std::to_string(plan.limit.count()) + " s" + where);
            break;
        case ChildEnd::How::exited:
            if (!end.done || child.code != 0)
                report.fail(Check::survives,
                            "it ended its process with code " + std::to_string(child.code) + where);
            break;
    }
    if (report.failed(Check::survives)) skip_from(Check::loads, "the process ended" + where, report);
    if (known.words && end.words) {
        compare_words(*known.words, *end.words, report);
    } else {
        report.skip(Check::same_words,
                    known.words ? "nothing was reported" : "there are no words to compare with");
    }
    // What was gone through and not complained of holds.
    for (int i = static_cast<int>(Check::loads); i < static_cast<int>(Check::count_); ++i)
        if (report[static_cast<Check>(i)].details.empty()) report.pass(static_cast<Check>(i));
}

}  // namespace

Report check_plugin(const CheckPlan& plan) {
    Report report;
    const StaticResult known = check_without_loading(plan.file, report);
    if (known.loadable)
        drive(plan, known, report);
    else
        skip_from(Check::loads, known.why_not, report);
    // Nothing is left without a word.
    skip_from(Check::file, "the checks before it ended early", report);
    return report;
}

}  // namespace zam::host
