#pragma once
// Files that are read.
#include <string>

namespace zam::io {

// Throws SceneError for what is neither a file nor a folder: pipes and devices. They may wait for a writer, go on
// without an end, and give their bytes only once, whereas a scene's are looked at several times.
void require_file(const std::string& file);

// The whole file. Throws SceneError when it is none, cannot be read or is longer than `limit` bytes.
[[nodiscard]] std::string read_file(const std::string& file, std::size_t limit);

}  // namespace zam::io
