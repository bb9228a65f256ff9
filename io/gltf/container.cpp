#include "io/gltf/container.h"

#include <algorithm>
#include <cmath>
#include <filesystem>

#include "host/text.h"
#include "host/utf8_path.h"
#include "io/gltf/bytes.h"
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
    const std::uint64_t length = little_endian(header, 8), json_length = little_endian(header, 12);
    if (little_endian(header, 16) != kJsonChunk)
        throw SceneError(file, {}, "the first chunk is not the JSON", again);
    if (json_length > kLargestJson)
        throw SceneError(file, {},
                         "the JSON chunk is larger than " + std::to_string(kLargestJson >> 20) + " MiB",
                         "a scene needs only lights, cameras and their nodes");
    const std::uint64_t next = 20 + json_length;
    if (next > length)
        throw SceneError(file, {},
                         "the header gives the file " + std::to_string(length) +
                             " bytes, the JSON chunk ends at " + std::to_string(next),
                         again);
    std::string json = read_range(file, 20, json_length);
    if (json.size() < json_length) throw SceneError(file, {}, "the file ends within its JSON chunk", again);
    // Chunks end at a multiple of four. Spaces should fill the rest; some exporters write zeros.
    json.resize(json.find_last_not_of('\0') + 1);
    document_ = parse_json(file, json);
    binary_ = true;
    find_binary_chunk(next, length);
}

// The file may have been cut off behind its JSON: that matters when a light needs what is gone.
void Container::find_binary_chunk(std::uint64_t at, std::uint64_t end) {
    if (at == end) return;
    const std::string header = read_range(document_.file, at, 8);
    const std::uint64_t length = header.size() < 8 ? 0 : little_endian(header, 0),
                        chunk_end = at + 8 + length;
    if (chunk_end > end)
        throw SceneError(document_.file, {},
                         "the header gives the file " + std::to_string(end) +
                             " bytes, the chunk behind the JSON ends at " + std::to_string(chunk_end),
                         "export the file again, as glTF 2.0 binary");
    if (header.size() < 8 || little_endian(header, 4) != kBinChunk) return;
    chunk_offset_ = at + 8;
    chunk_length_ = length;
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
    for (const JsonValue& extension : list(root(), "extensionsRequired")) {
        if (!extension.is(Kind::string))
            throw error(extension, std::string("an extension is ") + extension.kind_name() + ", not a text",
                        "write the extensions' names");
        if (!is_harmless(extension.text))
            throw error(
                extension,
                "the file requires the extension " + quote(extension.text) + ", which is not known here",
                "export again without it, for example without compression");
    }
}

SceneError Container::error(const JsonValue& value, const std::string& text, const std::string& hint) const {
    return document_.error(value, document_.pointer(value) + ": " + text, hint);
}

const JsonValue& Container::element(const char* array, const JsonValue& user) const {
    const std::vector<JsonValue>& all = list(root(), array);
    const bool whole_number =
        user.is(Kind::number) && user.number >= 0 && user.number == std::floor(user.number);
    if (!whole_number)
        throw error(user, std::string("this is no index into ") + array, "indices are whole numbers from 0");
    if (user.number >= static_cast<double>(all.size()))
        throw error(user,
                    "there is no element " + format_number(user.number) + " in " + array + ", which has " +
                        std::to_string(all.size()),
                    "export the file again; references like this one are broken");
    const JsonValue& found = all[static_cast<std::size_t>(user.number)];
    check_kind(found, Kind::object);
    return found;
}

void Container::check_kind(const JsonValue& value, Kind wanted) const {
    if (value.is(wanted)) return;
    const bool object = wanted == Kind::object;
    throw error(value,
                std::string("this is ") + value.kind_name() + (object ? ", not an object" : ", not an array"),
                object ? "write its members in braces" : "write its elements in brackets");
}

const JsonValue* Container::object(const JsonValue& parent, const char* member) const {
    const JsonValue* value = parent.find(member);
    if (value) check_kind(*value, Kind::object);
    return value;
}

const std::vector<JsonValue>& Container::list(const JsonValue& parent, const char* member) const {
    static const std::vector<JsonValue> kNone;
    const JsonValue* value = parent.find(member);
    if (!value) return kNone;
    check_kind(*value, Kind::array);
    return value->children;
}

const std::vector<JsonValue>& Container::objects(const JsonValue& parent, const char* member) const {
    const std::vector<JsonValue>& all = list(parent, member);
    for (const JsonValue& value : all) check_kind(value, Kind::object);
    return all;
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
        const bool first = &buffer == &list(root(), "buffers").front();
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
    return read_range(buffer_file(user, uri).string(), offset, length);
}

fs::path Container::buffer_file(const JsonValue& user, const JsonValue& uri) const {
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
    std::error_code lost;
    const fs::path file = scheme ? fs::path() : fs::weakly_canonical(home / name, lost);
    if (scheme || code || (!lost && !lies_inside(file, home)))
        throw error(uri, "the buffer " + quote(uri.text) + " lies outside of the scene's folder",
                    "put the file beside the scene and name it without a path");
    const fs::file_type type = lost ? fs::file_type::none : fs::status(file, code).type();
    if (type == fs::file_type::regular) return file;
    const std::string wrong = lost == std::errc::filename_too_long       ? "has too long a name"
                              : type == fs::file_type::directory         ? "is a folder"
                              : lost || type == fs::file_type::not_found ? "is missing"
                              : type == fs::file_type::none              ? "cannot be read"
                                                                         : "is a pipe or a device";
    throw error(uri,
                "the buffer file " + quote(name.string()) + " " + wrong + ", and the animation at " +
                    document_.pointer(user) + " needs it",
                wrong == "is missing" ? "put it into the scene's folder, " + folder.string()
                                      : "name a file in the scene's folder, " + folder.string());
}

}  // namespace zam::io::gltf
