#pragma once
// Small things that messages are made of.
#include <string>
#include <string_view>
#include <vector>

#include "host/composition/printable.h"

namespace zam::io {

// The candidate that `word` most likely was meant to be; empty when none is near. Case does not count.
[[nodiscard]] std::string nearest(std::string_view word, const std::vector<std::string>& candidates);

using host::printable;
using host::quote;
using host::shorten;

// As short as it reads back the same to ten digits: 190, 0.25, 1e+12.
[[nodiscard]] std::string format_number(double value);

// "a, b or c"
[[nodiscard]] std::string join_or(const std::vector<std::string>& words);

}  // namespace zam::io
