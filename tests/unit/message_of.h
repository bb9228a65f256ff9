#pragma once
// What an error says, for tests of refusals.
#include <string>

namespace zam {

// The message of the Error that `act` throws; empty when it throws none.
template <class Error, class Act>
std::string message_of(const Act& act) {
    try {
        act();
    } catch (const Error& error) {
        return error.what();
    }
    return {};
}

}  // namespace zam
