#include "io/gltf/container.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <optional>

#include "host/text.h"
#include "host/utf8_path.h"
#include "io/input_file.h"

namespace zam::io::gltf {
namespace {

namespace fs = std::filesystem;
using Kind = JsonValue::Kind;

constexpr std::uint32_t kMagic = 0x46546C67;        // "glTF"
constexpr std::uint32_t kJsonChunk = 0x4E4F534A;    // "JSON"
constexpr std::uint32_t kBinChunk = 0x004E4942;     // "BIN"
constexpr std::uint64_t kMostNumbers = 10'000'000;  // of all animation together

// Extensions that are read here or only concern surfaces, textures and meshes. Buffers may be compressed as long
// as no light needs them.
bool is_harmless(const std::string& extension) {
    static const std::vector<std::string> kBeginnings = {"KHR_materials_", "EXT_materials_", "KHR_texture_",
                                                         "EXT_texture_",   "MSFT_texture_",  "KHR_mesh_",
                                                         "EXT_mesh_"};
    static const std::vector<std::string> kNames = {"KHR_lights_punctual",     "KHR_animation_pointer",
                                                    "KHR_node_visibility",     "KHR_draco_mesh_compression",
                                                    "EXT_meshopt_compression", "KHR_meshopt_compression",
                                                    "KHR_xmp_json_ld"};
    return std::find(kNames.begin(), kNames.end(), extension) != kNames.end() ||
           std::any_of(kBeginnings.begin(), kBeginnings.end(),
                       [&](const std::string& beginning) { return extension.starts_with(beginning); });
}

std::uint32_t little_endian(const std::string& bytes, std::size_t at) {
    std::uint32_t value = 0;
    for (std::size_t i = 4; i-- > 0;) value = value << 8 | static_cast<unsigned char>(bytes[at + i]);
    return value;
}

// `length` bytes from `offset`; fewer at the end of the file, none when it cannot be read.
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

int base64_digit(char c) {
    if (c >= 'A' && c <= 'Z') return c - 'A';
    if (c >= 'a' && c <= 'z') return c - 'a' + 26;
    if (c >= '0' && c <= '9') return c - '0' + 52;
    return c == '+' ? 62 : c == '/' ? 63 : -1;
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

bool lies_inside(const fs::path& file, const fs::path& folder) {
    const auto [end, at] = std::mismatch(folder.begin(), folder.end(), file.begin(), file.end());
    return end == folder.end() && at != file.end();
}

}  // namespace

Container::Container(const std::string& file) {
    const std::string header = read_range(file, 0, 20);
    if (header.size() >= 4 && little_endian(header, 0) == kMagic) {
        document_.file = file;
        read_binary(header);
    } else {
        document_ = parse_json(file, read_file(file, kLargestJson));
    }
    if (!root().is(Kind::object))
        throw error(root(), std::string("the file holds ") + root().kind_name() + ", not an object",
                    "a .gltf file begins with { and has an \"asset\"");
    check_version();
    check_extensions();
}

void Container::read_binary(const std::string& header) {
    const std::string file = document_.file;
    const char* again = "export the file again, as glTF 2.0 binary";
    if (header.size() < 20) throw SceneError(file, {}, "the file ends within its header", again);
    if (little_endian(header, 4) != 2)
        throw SceneError(file, {},
                         "binary glTF version " + std::to_string(little_endian(header, 4)) + " is not known",
                         again);
    const std::uint64_t json_length = little_endian(header, 12);
    if (little_endian(header, 16) != kJsonChunk)
        throw SceneError(file, {}, "the first chunk is not the JSON", again);
    if (json_length > kLargestJson)
        throw SceneError(file, {},
                         "the JSON chunk is larger than " + std::to_string(kLargestJson >> 20) + " MiB",
                         "a scene needs only lights, cameras and their nodes");
    std::string json = read_range(file, 20, json_length);
    if (json.size() < json_length) throw SceneError(file, {}, "the file ends within its JSON chunk", again);
    // Chunks end at a multiple of four. Spaces should fill the rest; some exporters write zeros.
    json.resize(json.find_last_not_of('\0') + 1);
    document_ = parse_json(file, json);
    binary_ = true;
    const std::uint64_t next = 20 + json_length;
    const std::string chunk = read_range(file, next, 8);
    if (chunk.size() == 8 && little_endian(chunk, 4) == kBinChunk) {
        chunk_offset_ = next + 8;
        chunk_length_ = little_endian(chunk, 0);
    }
}

void Container::check_version() const {
    const JsonValue* asset = root().find("asset");
    const JsonValue* version = asset ? asset->find("version") : nullptr;
    if (!version || !version->is(Kind::string))
        throw error(asset ? *asset : root(), "there is no asset version: this is not glTF",
                    "glTF 2.0 files say \"asset\": {\"version\": \"2.0\"}; our own format is described in "
                    "docs/scene-format.md");
    if (!version->text.starts_with("2."))
        throw error(*version, "glTF version " + quote(version->text) + " is not known",
                    "export the scene as glTF 2.0");
    if (const JsonValue* least = asset->find("minVersion"); least && least->text != "2.0")
        throw error(*least, "the file asks for glTF " + quote(least->text) + " at least",
                    "export the scene as glTF 2.0");
}

void Container::check_extensions() const {
    const JsonValue* required = root().find("extensionsRequired");
    if (!required) return;
    for (const JsonValue& extension : required->children)
        if (!is_harmless(extension.text))
            throw error(
                extension,
                "the file requires the extension " + quote(extension.text) + ", which is not known here",
                "export again without it, for example without compression");
}

SceneError Container::error(const JsonValue& value, const std::string& text, const std::string& hint) const {
    return document_.error(value, document_.pointer(value) + ": " + text, hint);
}

const JsonValue& Container::element(const char* array, const JsonValue& user) const {
    const JsonValue* list = root().find(array);
    const std::size_t count = list && list->is(Kind::array) ? list->children.size() : 0;
    const bool whole_number =
        user.is(Kind::number) && user.number >= 0 && user.number == std::floor(user.number);
    if (!whole_number)
        throw error(user, std::string("this is no index into ") + array, "indices are whole numbers from 0");
    if (user.number >= static_cast<double>(count))
        throw error(user,
                    "there is no element " + format_number(user.number) + " in " + array + ", which has " +
                        std::to_string(count),
                    "export the file again; references like this one are broken");
    return list->children[static_cast<std::size_t>(user.number)];
}

const JsonValue& Container::required(const JsonValue& object, const char* member) const {
    if (const JsonValue* value = object.find(member)) return *value;
    throw error(object, std::string("there is no \"") + member + "\" here", "export the file again");
}

std::uint64_t Container::whole(const JsonValue& object, const char* member, std::uint64_t fallback) const {
    const JsonValue* value = object.find(member);
    if (!value) return fallback;
    const bool valid = value->is(Kind::number) && value->number >= 0 && value->number <= 9e15 &&
                       value->number == std::floor(value->number);
    if (!valid)
        throw error(*value, std::string(member) + " is not a whole number from 0", "export the file again");
    return static_cast<std::uint64_t>(value->number);
}

void Container::spend(const JsonValue& user, std::uint64_t numbers) const {
    spent_ += numbers;
    if (spent_ > kMostNumbers)
        throw error(
            user,
            "the animation holds more than " + std::to_string(kMostNumbers / 1'000'000) + " million numbers",
            "export fewer lights or a shorter range");
}

std::string Container::bytes(const JsonValue& index, std::uint64_t offset, std::uint64_t length,
                             const JsonValue& user) const {
    const JsonValue& buffer = element("buffers", index);
    const std::uint64_t size = whole(buffer, "byteLength", 0);
    if (offset > size || length > size - offset)
        throw error(index, "the bytes reach beyond the buffer's byteLength " + std::to_string(size),
                    "export the file again");
    const JsonValue* uri = buffer.find("uri");
    std::string result;
    if (!uri) {
        const bool first = &buffer == &root().find("buffers")->children.front();
        const bool stored = binary_ && first;
        if (!stored && buffer.find("extensions"))
            throw error(buffer,
                        "the buffer stands for compressed data, and the animation at " +
                            document_.pointer(user) + " needs it",
                        "export again without compression");
        if (!stored)
            throw error(buffer, "the buffer has no uri", "export again, with the buffers beside the file");
        if (offset <= chunk_length_ && length <= chunk_length_ - offset)
            result = read_range(document_.file, chunk_offset_ + offset, length);
    } else if (!uri->is(Kind::string)) {
        throw error(*uri, "uri is not a text", "give the name of a file in the scene's folder");
    } else if (uri->text.starts_with("data:")) {
        const std::string& decoded = embedded(*uri);
        if (offset < decoded.size()) result = decoded.substr(offset, length);
    } else {
        result = file_bytes(user, *uri, offset, length);
    }
    if (result.size() < length)
        throw error(uri ? *uri : buffer, "the buffer ends before its byteLength",
                    "the file or its .bin was cut short; copy or export it again");
    return result;
}

const std::string& Container::embedded(const JsonValue& uri) const {
    const auto known = embedded_.find(&uri);
    if (known != embedded_.end()) return known->second;
    const auto comma = uri.text.find(";base64,");
    auto decoded = comma == std::string::npos ? std::nullopt
                                              : decode_base64(std::string_view(uri.text).substr(comma + 8));
    if (!decoded) throw error(uri, "the data is not base64", "export the file again");
    return embedded_.emplace(&uri, std::move(*decoded)).first->second;
}

std::string Container::file_bytes(const JsonValue& user, const JsonValue& uri, std::uint64_t offset,
                                  std::uint64_t length) const {
    const std::string decoded = decode_percent(uri.text);
    if (std::any_of(decoded.begin(), decoded.end(), [](unsigned char c) { return c < 0x20 || c == 0x7F; }))
        throw error(uri, "the buffer's uri " + quote(decoded) + " holds control characters",
                    "give the name of a file in the scene's folder");
    const fs::path name = host::utf8_path(decoded);
    fs::path folder = host::utf8_path(document_.file).parent_path();
    if (folder.empty()) folder = ".";
    std::error_code code;
    // Links are followed first, so that neither ".." nor a link leads out of the folder.
    const fs::path home = fs::canonical(folder, code);
    const bool scheme = uri.text.find("://") != std::string::npos || name.is_absolute();
    const fs::path file = scheme ? fs::path() : fs::weakly_canonical(home / name, code);
    if (scheme || code || !lies_inside(file, home))
        throw error(uri, "the buffer " + quote(uri.text) + " lies outside of the scene's folder",
                    "put the file beside the scene and name it without a path");
    if (!fs::is_regular_file(file, code))
        throw error(uri,
                    "the buffer file " + quote(name.string()) + " is missing, and the animation at " +
                        document_.pointer(user) + " needs it",
                    "put it into the scene's folder, " + folder.string());
    return read_range(file.string(), offset, length);
}

}  // namespace zam::io::gltf
