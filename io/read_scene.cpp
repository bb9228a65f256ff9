#include "io/read_scene.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "host/text.h"
#include "io/composition_reader.h"
#include "io/gltf/read_gltf.h"
#include "io/input_file.h"
#include "io/scene_error.h"

namespace zam::io {
namespace {

// Anything that begins as JSON text may, wrong as it may be further on, so that the fault is told with its place.
bool looks_like_json(const std::string& text) {
    const auto first = text.find_first_not_of(" \t\r\n");
    return first == std::string::npos || text[first] == '{' || text[first] == '[' || text[first] == '\xEF';
}

}  // namespace

bool is_gltf(const std::string& file) {
    const std::string extension = lower(std::filesystem::path(file).extension().string());
    if (extension == ".gltf" || extension == ".glb") return true;
    if (extension == ".json") return false;
    std::ifstream stream(file, std::ios::binary);
    char magic[4] = {};
    stream.read(magic, sizeof magic);
    return std::string(magic, sizeof magic) == "glTF";
}

Scene read_scene(const std::string& file, const GltfOptions& gltf) {
    require_file(file);
    if (is_gltf(file)) return gltf::read_gltf(file, gltf);
    Scene scene;
    const std::string text = read_file(file, kLargestJson);
    if (!looks_like_json(text))
        throw SceneError(file, {}, "this is neither a composition in JSON nor glTF 2.0",
                         "export glTF 2.0 (.glb or .gltf) from the program that made it");
    scene.composition = read_composition(parse_json(file, text));
    const auto& layers = scene.composition.layers;
    const bool shines = std::any_of(layers.begin(), layers.end(), [](const host::Layer& layer) {
        return layer.kind == host::LayerKind::light &&
               (layer.light.type == host::LightType::spot || layer.light.type == host::LightType::point);
    });
    if (!shines) scene.warnings.push_back(file + ": there is no point or spot light; nothing will shine");
    return scene;
}

}  // namespace zam::io
