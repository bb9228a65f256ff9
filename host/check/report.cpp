#include "host/check/report.h"

#include <algorithm>
#include <array>

#include "host/text.h"

namespace zam::host {
namespace {

constexpr std::size_t kChecks = static_cast<std::size_t>(Check::count_);
constexpr std::size_t kMostDetails = 10;
constexpr std::size_t kLongestDetail = 4000;

std::string shown(const std::string& text) { return shorten(printable(text), kLongestDetail); }

constexpr std::array<CheckText, kChecks> kTexts{{
    {"file", "The file is there and can be read."},
    {"library", "It is a loadable library of Windows, macOS or Linux, and whole."},
    {"processor",
     "It holds code for a 64-bit processor that its system's After Effects, or this host, runs on."},
    {"entry", "The entry function is exported by its plain name."},
    {"bundle", "The macOS bundle has a property list, a type file and an executable that name an effect."},
    {"property-list", "A property resource (PiPL) is there, is whole and describes an effect."},
    {"loads", "The system loads the library and finds the entry function."},
    {"survives", "No command crashes, hangs or ends the process."},
    {"commands", "Every command of the life cycle is answered without an error."},
    {"exceptions", "No exception leaves the entry function or a row."},
    {"same-words", "PF_Cmd_GLOBAL_SETUP reports the version and flags that the property resource names."},
    {"control-count", "PF_Cmd_PARAMS_SETUP announces as many controls as it adds."},
    {"control-names", "Every control's name has at most 31 characters and a terminator."},
    {"control-ids", "No two controls share a persistent id."},
    {"control-ranges", "Defaults lie within their ranges, and popups name as many choices as they announce."},
    {"messages", "Messages end within their 256 bytes."},
    {"given-back", "No suite, stream, handle or lock of the host is held after a command."},
    {"valid-calls", "Host calls are made with handles, pointers and at times that are valid."},
    {"inside-blocks", "Nothing is written outside of the host's memory blocks."},
    {"inside-rows", "Nothing is written outside of the rows of an image."},
    {"pixels", "Every pixel of the output is written, with no channel above full scale."},
    {"repeats", "The same frame rendered twice gives the same bytes."},
    {"threads", "Rows on several threads give the same bytes as on one."},
}};

}  // namespace

const CheckText& text_of(Check check) { return kTexts.at(static_cast<std::size_t>(check)); }

Check check_of(std::string_view name) {
    const auto found =
        std::find_if(kTexts.begin(), kTexts.end(), [&](const CheckText& text) { return text.name == name; });
    return static_cast<Check>(found - kTexts.begin());
}

void Report::fail(Check check, const std::string& text) {
    Finding& finding = findings_[static_cast<std::size_t>(check)];
    if (finding.verdict != Verdict::failed) finding = {Verdict::failed, {}};
    auto& all = finding.details;
    std::string detail = shown(text);
    if (std::find(all.begin(), all.end(), detail) == all.end() && all.size() < kMostDetails)
        all.push_back(std::move(detail));
}

void Report::pass(Check check) {
    Finding& finding = findings_[static_cast<std::size_t>(check)];
    if (finding.verdict == Verdict::not_checked) finding = {Verdict::passed, {}};
}

void Report::skip(Check check, const std::string& reason) {
    Finding& finding = findings_[static_cast<std::size_t>(check)];
    if (finding.verdict == Verdict::not_checked && finding.details.empty())
        finding.details.push_back(shown(reason));
}

bool Report::failed() const {
    return std::any_of(findings_.begin(), findings_.end(),
                       [](const Finding& finding) { return finding.verdict == Verdict::failed; });
}

std::string escaped(std::string_view text) {
    std::string result;
    for (const char c : text) {
        if (c >= ' ' && c <= '~') {
            result += c;
        } else {
            constexpr char kDigits[] = "0123456789ABCDEF";
            const auto byte = static_cast<unsigned char>(c);
            result += std::string("\\x") + kDigits[byte >> 4] + kDigits[byte & 15];
        }
    }
    return result;
}

}  // namespace zam::host
