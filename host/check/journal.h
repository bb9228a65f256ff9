#pragma once
// What the process that drives a plug-in tells the one that waits for it, line by line into a file: whatever becomes
// of the first, all that it wrote is there.
#include <fstream>
#include <optional>
#include <string>

#include "host/check/report.h"
#include "host/check/static_checks.h"

namespace zam::host {

class JournalWriter {
  public:
    explicit JournalWriter(const std::string& path) : file_(path, std::ios::binary | std::ios::app) {}

    void stage(const std::string& what) { line("stage", "", what); }  // that begins now
    void fail(Check check, const std::string& detail) { line("fail", text_of(check).name, detail); }
    void pass(Check check) { line("pass", text_of(check).name, ""); }
    void skip(Check check, const std::string& reason) { line("skip", text_of(check).name, reason); }
    void words(const ReportedWords& words);
    void done() { line("done", "", ""); }

  private:
    void line(std::string_view verb, std::string_view check, const std::string& text);
    std::ofstream file_;
};

struct JournalEnd {
    std::string stage;  // the last that began
    bool done = false;
    std::optional<ReportedWords> words;
};

// Enters what was found into the report. Lines that make no sense, a cut one for instance, are left out.
JournalEnd read_journal(const std::string& path, Report& report);

}  // namespace zam::host
