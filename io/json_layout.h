#pragma once
// JSON laid out for people: what fits stays on one line.
#include <nlohmann/json_fwd.hpp>
#include <string>

namespace zam::io {

// Without a line's end behind it. Bytes that are no UTF-8 are replaced.
[[nodiscard]] std::string layout(const nlohmann::ordered_json& value);

}  // namespace zam::io
