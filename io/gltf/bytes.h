#pragma once
// Bytes of files, and those that texts stand for.
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace zam::io::gltf {

// The four bytes from `at`, which must be there.
[[nodiscard]] std::uint32_t little_endian(const std::string& bytes, std::size_t at);

// `length` bytes from `offset`; fewer at the end of the file, none when it cannot be read.
[[nodiscard]] std::string read_range(const std::string& file, std::uint64_t offset, std::uint64_t length);

// None when a character is no digit of base64.
[[nodiscard]] std::optional<std::string> decode_base64(std::string_view text);

// With the bytes that %20 and its like stand for.
[[nodiscard]] std::string decode_percent(const std::string& uri);

}  // namespace zam::io::gltf
