#pragma once
// Which frames to render, as the command line says it.
#include <string>
#include <vector>

namespace zam::cli {

// "5", "0-47", "0-47x2" (every second one) and lists of these, "1,5,9-12"; in the given order, none twice.
// Frames lie within 0..frame_count-1. Throws UsageError.
[[nodiscard]] std::vector<int> parse_frames(const std::string& text, int frame_count);

}  // namespace zam::cli
