#pragma once
// What a plug-in file is checked for, and what came out.
#include <string>
#include <string_view>
#include <vector>

namespace zam::host {

enum class Check {
    // Without loading it.
    file,
    library,
    processor,
    entry,
    bundle,
    property_list,
    // By loading and driving it, in a process of its own.
    loads,
    survives,
    commands,
    exceptions,
    same_words,
    control_count,
    control_names,
    control_ids,
    control_ranges,
    messages,
    given_back,
    valid_calls,
    inside_blocks,
    inside_rows,
    pixels,
    repeats,
    threads,
    count_
};

struct CheckText {
    std::string_view name;
    std::string_view sentence;  // what holds of a file that passes
};
[[nodiscard]] const CheckText& text_of(Check check);
[[nodiscard]] Check check_of(std::string_view name);  // Check::count_ for a name that is none

enum class Verdict { not_checked, passed, failed };

struct Finding {
    Verdict verdict = Verdict::not_checked;
    std::vector<std::string> details;  // what is wrong, or why it was not checked
};

class Report {
  public:
    Report() : findings_(static_cast<std::size_t>(Check::count_)) {}

    // Texts may hold what files hold: they are entered printable, on one line and of 4000 bytes at most.
    // A failure stays one, whatever is told later, and collects its details.
    void fail(Check check, const std::string& detail);
    void pass(Check check);
    // For a check with no verdict yet; the first reason is kept.
    void skip(Check check, const std::string& reason);

    [[nodiscard]] const Finding& operator[](Check check) const {
        return findings_[static_cast<std::size_t>(check)];
    }
    [[nodiscard]] bool failed() const;
    [[nodiscard]] bool failed(Check check) const { return (*this)[check].verdict == Verdict::failed; }

    std::string kind;  // "Windows library, x86-64"; empty when it is none

  private:
    std::vector<Finding> findings_;
};

// In ASCII, every other byte as \xHH: what a terminal or the reader of a line could take amiss.
[[nodiscard]] std::string escaped(std::string_view text);

}  // namespace zam::host
