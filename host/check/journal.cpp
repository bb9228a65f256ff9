#include "host/check/journal.h"

#include <sstream>

namespace zam::host {

void JournalWriter::words(const ReportedWords& words) {
    line("words", "",
         std::to_string(words.version) + " " + std::to_string(words.out_flags) + " " +
             std::to_string(words.out_flags2));
}

void JournalWriter::line(std::string_view verb, std::string_view check, const std::string& text) {
    file_ << verb << '\t' << check << '\t' << escaped(text) << '\n' << std::flush;
}

JournalEnd read_journal(const std::string& path, Report& report) {
    JournalEnd end;
    std::ifstream file(path, std::ios::binary);
    for (std::string line; std::getline(file, line);) {
        const auto first = line.find('\t'), second = line.find('\t', first + 1);
        if (first == std::string::npos || second == std::string::npos) continue;
        const std::string verb = line.substr(0, first), text = line.substr(second + 1);
        const Check check = check_of(std::string_view(line).substr(first + 1, second - first - 1));
        if (verb == "stage") end.stage = text;
        if (verb == "done") end.done = true;
        if (verb == "words") {
            ReportedWords words;
            std::istringstream(text) >> words.version >> words.out_flags >> words.out_flags2;
            end.words = words;
        }
        if (check == Check::count_) continue;
        if (verb == "fail") report.fail(check, text);
        if (verb == "pass") report.pass(check);
        if (verb == "skip") report.skip(check, text);
    }
    return end;
}

}  // namespace zam::host
