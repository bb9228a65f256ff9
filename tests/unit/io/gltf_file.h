#pragma once
// Writes small glTF files for tests, a JSON text with accessors over a buffer, and reads them back.
#include <unistd.h>

#include <bit>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "io/gltf/read_gltf.h"
#include "tests/unit/message_of.h"

namespace zam::io {

class GltfFile {
  public:
    GltfFile() { std::filesystem::create_directories(folder_); }
    ~GltfFile() { std::filesystem::remove_all(folder_); }
    GltfFile(const GltfFile&) = delete;
    GltfFile& operator=(const GltfFile&) = delete;

    // Text of the lights' definitions, of the nodes, of cameras, and of more root members ("\"scene\": 0").
    std::string lights = R"({"type": "point"})";
    std::string nodes = R"({"extensions": {"KHR_lights_punctual": {"light": 0}}})";
    std::string cameras, more;
    // Where the buffer stands: beside the scene, as a chunk of one binary file, or wherever the URI says.
    enum class Store { file, chunk, elsewhere } store = Store::file;
    std::string uri = "floats%20here.bin";
    char json_filling = ' ';  // at the end of a binary file's JSON

    [[nodiscard]] const std::filesystem::path& folder() const { return folder_; }

    // Adds an accessor; returns its index as text.
    std::string floats(const char* type, const std::vector<float>& numbers) {
        const std::size_t width = std::string(type) == "SCALAR" ? 1 : std::string(type) == "VEC3" ? 3 : 4;
        std::string bytes;
        for (const float number : numbers) bytes += word(std::bit_cast<std::uint32_t>(number));
        return add_accessor(5126, type, numbers.size() / width, bytes,
                            width == 1 ? R"(, "max": [)" + std::to_string(numbers.back()) + "]" : "");
    }
    // The same of bytes; the buffer must not hold floats after them.
    std::string bytes(const std::string& numbers) {
        return add_accessor(5121, "SCALAR", numbers.size(), numbers, "");
    }

    void animate(int node, const char* path, const char* interpolation, const std::vector<float>& seconds,
                 const std::vector<float>& values) {
        const std::string input = floats("SCALAR", seconds);
        add_animation(R"("node": )" + std::to_string(node) + R"(, "path": ")" + path + "\"", interpolation,
                      input, floats(std::string(path) == "rotation" ? "VEC4" : "VEC3", values));
    }
    // By KHR_animation_pointer; `type` is that of the values.
    void point(const std::string& pointer, const char* interpolation, const char* type,
               const std::vector<float>& seconds, const std::vector<float>& values) {
        const std::string input = floats("SCALAR", seconds);
        add_pointer(pointer, interpolation, input, floats(type, values));
    }
    void point_bytes(const std::string& pointer, const std::vector<float>& seconds,
                     const std::string& values) {
        const std::string input = floats("SCALAR", seconds);
        add_pointer(pointer, "STEP", input, bytes(values));
    }

    // Writes everything; returns the scene's name.
    std::string write(const std::string& name = "scene.gltf") const {
        if (store == Store::file) std::ofstream(folder_ / "floats here.bin", std::ios::binary) << bytes_;
        std::ofstream file(folder_ / name, std::ios::binary);
        if (store != Store::chunk) {
            file << text();
        } else {
            std::string json = text();
            json.resize((json.size() + 4) / 4 * 4, json_filling);
            file << "glTF" << word(2) << word(28 + json.size() + bytes_.size()) << word(json.size()) << "JSON"
                 << json << word(bytes_.size()) << "BIN" << '\0' << bytes_;
        }
        return (folder_ / name).string();
    }

  private:
    std::string add_accessor(int component, const std::string& type, std::size_t count,
                             const std::string& bytes, const std::string& more_members) {
        accessors_ += separator(accessors_) + R"({"bufferView": )" + std::to_string(count_) +
                      R"(, "componentType": )" + std::to_string(component) + R"(, "count": )" +
                      std::to_string(count) + R"(, "type": ")" + type + "\"" + more_members + "}";
        views_ += separator(views_) + R"({"buffer": 0, "byteOffset": )" + std::to_string(bytes_.size()) +
                  R"(, "byteLength": )" + std::to_string(bytes.size()) + "}";
        bytes_ += bytes;
        return std::to_string(count_++);
    }
    void add_pointer(const std::string& pointer, const char* interpolation, const std::string& input,
                     const std::string& output) {
        add_animation(R"("path": "pointer", "extensions": {"KHR_animation_pointer": {"pointer": ")" +
                          pointer + R"("}})",
                      interpolation, input, output);
    }
    void add_animation(const std::string& target, const char* interpolation, const std::string& input,
                       const std::string& output) {
        animations_ += separator(animations_) + R"({"samplers": [{"input": )" + input + R"(, "output": )" +
                       output + R"(, "interpolation": ")" + interpolation +
                       R"("}], "channels": [{"sampler": 0, "target": {)" + target + "}}]}";
    }

    // Least significant byte first.
    static std::string word(std::size_t n) {
        std::string bytes;
        for (int shift = 0; shift < 32; shift += 8) bytes += static_cast<char>(n >> shift & 0xFF);
        return bytes;
    }
    static std::string separator(const std::string& list) { return list.empty() ? "" : ", "; }

    std::string text() const {
        std::string buffer = R"({"byteLength": )" + std::to_string(bytes_.size());
        if (uri.empty())
            buffer += R"(, "extensions": {"EXT_meshopt_compression": {"fallback": true}})";
        else if (store != Store::chunk)
            buffer += ", \"uri\": \"" + uri + "\"";
        std::string result =
            "{\"asset\": {\"version\": \"2.0\"},\n\"extensions\": {\"KHR_lights_punctual\": "
            "{\"lights\": [\n" +
            lights + "]}},\n\"nodes\": [\n" + nodes + "]";
        if (!cameras.empty()) result += ",\n\"cameras\": [\n" + cameras + "]";
        if (!animations_.empty()) result += ",\n\"animations\": [" + animations_ + "]";
        if (!more.empty()) result += ",\n" + more;
        return result + ",\n\"accessors\": [" + accessors_ + "], \"bufferViews\": [" + views_ +
               "],\n\"buffers\": [" + buffer + "}]}\n";
    }

    std::filesystem::path folder_ =
        std::filesystem::temp_directory_path() / ("zam_gltf_" + std::to_string(getpid()));
    std::string accessors_, views_, animations_, bytes_;
    int count_ = 0;
};

inline GltfOptions small_options() {
    GltfOptions options;
    options.width = 640;
    options.height = 360;
    return options;
}

inline Scene read_small(const GltfFile& file) { return gltf::read_gltf(file.write(), small_options()); }

// The refusal of a file; empty when it is read.
inline std::string refusal(const GltfFile& file) {
    return message_of<SceneError>([&] { return read_small(file); });
}

inline const host::Layer& layer_named(const Scene& scene, const std::string& name) {
    for (const host::Layer& layer : scene.composition.layers)
        if (layer.name == name) return layer;
    throw std::runtime_error("no layer " + name);
}

}  // namespace zam::io
