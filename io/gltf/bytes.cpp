#include "io/gltf/bytes.h"

#include <algorithm>
#include <fstream>

namespace zam::io::gltf {
namespace {

int base64_digit(char c) {
    if (c >= 'A' && c <= 'Z') return c - 'A';
    if (c >= 'a' && c <= 'z') return c - 'a' + 26;
    if (c >= '0' && c <= '9') return c - '0' + 52;
    return c == '+' ? 62 : c == '/' ? 63 : -1;
}

}  // namespace

std::uint32_t little_endian(const std::string& bytes, std::size_t at) {
    std::uint32_t value = 0;
    for (std::size_t i = 4; i-- > 0;) value = value << 8 | static_cast<unsigned char>(bytes[at + i]);
    return value;
}

std::string read_range(const std::string& file, std::uint64_t offset, std::uint64_t length) {
    std::ifstream stream(file, std::ios::binary);
    if (!stream.seekg(0, std::ios::end)) return {};
    const auto size = static_cast<std::uint64_t>(std::max<std::streamoff>(stream.tellg(), 0));
    if (offset >= size) return {};
    std::string bytes(std::min(length, size - offset), '\0');
    stream.seekg(static_cast<std::streamoff>(offset));
    stream.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    bytes.resize(static_cast<std::size_t>(std::max<std::streamsize>(stream.gcount(), 0)));
    return bytes;
}

std::optional<std::string> decode_base64(std::string_view text) {
    while (!text.empty() && text.back() == '=') text.remove_suffix(1);
    std::string bytes;
    bytes.reserve(text.size() * 3 / 4);
    std::uint32_t bits = 0;
    int count = 0;
    for (const char c : text) {
        const int digit = base64_digit(c);
        if (digit < 0) return std::nullopt;
        bits = bits << 6 | static_cast<std::uint32_t>(digit);
        count += 6;
        if (count >= 8) {
            count -= 8;
            bytes += static_cast<char>(bits >> count & 0xFF);
        }
    }
    return bytes;
}

std::string decode_percent(const std::string& uri) {
    const auto digit = [](char c) {
        return c >= '0' && c <= '9'   ? c - '0'
               : c >= 'a' && c <= 'f' ? c - 'a' + 10
               : c >= 'A' && c <= 'F' ? c - 'A' + 10
                                      : -1;
    };
    std::string text;
    for (std::size_t i = 0; i < uri.size(); ++i) {
        if (uri[i] == '%' && i + 2 < uri.size() && digit(uri[i + 1]) >= 0 && digit(uri[i + 2]) >= 0) {
            text += static_cast<char>(digit(uri[i + 1]) * 16 + digit(uri[i + 2]));
            i += 2;
        } else {
            text += uri[i];
        }
    }
    return text;
}

}  // namespace zam::io::gltf
