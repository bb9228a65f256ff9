#pragma once
// What an effect holds of the host, and what it did wrong. After each command whatever the command took and
// did not give back becomes a report, once: later commands are not charged with it again.
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "hostapi/types.h"

namespace zam::host {

// Thrown inside a callback when the effect uses it against the rules; the call answers `code` and the report
// names what was wrong and the call.
struct Misuse {
    std::string what;  // "expired layer handle"
    A_Err code = 0;
};

// Thrown inside a callback that cannot do what it is asked, by the rules: just the error code.
struct Refusal {
    A_Err code = 0;
};

// The things that calls with "New" in their names hand out.
enum class Loan { stream, stream_value, effect };

class Ledger {
  public:
    void begin(std::string_view command);
    // Balances the books; the reports of the command in the order they came up.
    std::vector<std::string> end();

    // The first report of a kind wins: equal texts are kept once, and after a few dozen the rest are dropped.
    void report(std::string text);
    [[nodiscard]] std::string_view command() const { return command_; }

    // What the effect asked for and this host does not have, each once: its later errors may come of that.
    void missing(std::string what);
    [[nodiscard]] const std::vector<std::string>& missed() const { return missed_; }

    void suite_acquired(std::string_view name, int version);  // the name must live as long as the program
    [[nodiscard]] bool suite_released(std::string_view name, int version);  // false: it was not held

    void lend(Loan loan, std::uint64_t key, std::string_view call);
    [[nodiscard]] bool give_back(Loan loan, std::uint64_t key);  // false: it was not out
    [[nodiscard]] bool is_out(Loan loan, std::uint64_t key) const;

  private:
    struct Suite {
        std::string_view name;
        int version = 0;
        int held = 0;
        int charged = 0;  // held when the last command ended, and reported then
    };
    struct Lent {
        Loan loan;
        std::uint64_t key;
        std::string_view call;  // that handed it out
    };
    [[nodiscard]] Suite* find_suite(std::string_view name, int version);

    std::string command_;
    std::vector<std::string> reports_, missed_;
    std::vector<Suite> suites_;  // those ever acquired
    std::vector<Lent> lent_;
};

}  // namespace zam::host
