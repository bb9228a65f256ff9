#include "host/watch/ledger.h"

#include <algorithm>

namespace zam::host {
namespace {

constexpr std::size_t kMostReports = 50;

const char* name_of(Loan loan) {
    switch (loan) {
        case Loan::stream:
            return "stream";
        case Loan::stream_value:
            return "stream value";
        case Loan::effect:
            return "effect reference";
    }
    return "thing";
}

}  // namespace

void Ledger::begin(std::string_view command) {
    command_ = command;
    reports_.clear();
}

std::vector<std::string> Ledger::end() {
    for (Suite& suite : suites_) {
        if (suite.held > suite.charged) {
            std::string text = "suite \"" + std::string(suite.name) + "\" " + std::to_string(suite.version) +
                               " held after " + command_;
            if (suite.held - suite.charged > 1) {
                text += " (" + std::to_string(suite.held - suite.charged) + " times)";
            }
            report(std::move(text));
        }
        suite.charged = suite.held;
    }
    for (const Lent& lent : lent_) {
        report(std::string(name_of(lent.loan)) + " from " + std::string(lent.call) + " held after " +
               command_);
    }
    lent_.clear();  // their keys expire with the command
    return std::move(reports_);
}

void Ledger::report(std::string text) {
    if (reports_.size() > kMostReports || std::find(reports_.begin(), reports_.end(), text) != reports_.end())
        return;
    reports_.push_back(reports_.size() == kMostReports ? "further reports were dropped" : std::move(text));
}

Ledger::Suite* Ledger::find_suite(std::string_view name, int version) {
    const auto found = std::find_if(suites_.begin(), suites_.end(), [&](const Suite& suite) {
        return suite.version == version && suite.name == name;
    });
    return found == suites_.end() ? nullptr : &*found;
}

void Ledger::missing(std::string what) {
    if (missed_.size() < kMostReports && std::find(missed_.begin(), missed_.end(), what) == missed_.end())
        missed_.push_back(std::move(what));
}

void Ledger::suite_acquired(std::string_view name, int version) {
    Suite* suite = find_suite(name, version);
    if (!suite) suite = &suites_.emplace_back(Suite{name, version});
    ++suite->held;
}

bool Ledger::suite_released(std::string_view name, int version) {
    Suite* suite = find_suite(name, version);
    if (!suite || suite->held == 0) return false;
    --suite->held;
    return true;
}

void Ledger::lend(Loan loan, std::uint64_t key, std::string_view call) { lent_.push_back({loan, key, call}); }

bool Ledger::give_back(Loan loan, std::uint64_t key) {
    const auto found = std::find_if(lent_.begin(), lent_.end(),
                                    [&](const Lent& l) { return l.loan == loan && l.key == key; });
    if (found == lent_.end()) return false;
    lent_.erase(found);
    return true;
}

bool Ledger::is_out(Loan loan, std::uint64_t key) const {
    return std::any_of(lent_.begin(), lent_.end(),
                       [&](const Lent& l) { return l.loan == loan && l.key == key; });
}

}  // namespace zam::host
