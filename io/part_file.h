#pragma once
// A file on its way to its name, as each family of systems does that; one file of definitions for each.
#include <cstdint>
#include <cstdio>
#include <string>

namespace zam::io {

// Opens a file to collect the bytes of `file` in: without a name where the system has such files, and then `part` stays
// empty, else as `part`, "file.partPID". Null, and errno, when that fails.
[[nodiscard]] std::FILE* open_part(const std::string& file, std::string* part);

// What follows is false, with errno, on a failure.
[[nodiscard]] bool seek_part(std::FILE* stream, std::uint64_t position);
[[nodiscard]] bool name_part(std::FILE* stream, const std::string& file,
                             std::string* part);  // one that has none
[[nodiscard]] bool put_in_place(const std::string& part, const std::string& file);

void remove_part(const std::string& part);

}  // namespace zam::io
