#include "io/read_scene.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>

#include "io/composition_reader.h"
#include "io/gltf/read_gltf.h"

namespace zam::io {

bool is_gltf(const std::string& file) {
    std::string extension = std::filesystem::path(file).extension().string();
    for (char& c : extension) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    if (extension == ".gltf" || extension == ".glb") return true;
    if (extension == ".json") return false;
    std::ifstream stream(file, std::ios::binary);
    char magic[4] = {};
    stream.read(magic, sizeof magic);
    return std::string(magic, sizeof magic) == "glTF";
}

Scene read_scene(const std::string& file, const GltfOptions& gltf) {
    if (is_gltf(file)) return gltf::read_gltf(file, gltf);
    Scene scene;
    scene.composition = read_composition(parse_json(file, read_file(file, kLargestJson)));
    const auto& layers = scene.composition.layers;
    const bool shines = std::any_of(layers.begin(), layers.end(), [](const host::Layer& layer) {
        return layer.kind == host::LayerKind::light &&
               (layer.light.type == host::LightType::spot || layer.light.type == host::LightType::point);
    });
    if (!shines) scene.warnings.push_back(file + ": there is no point or spot light; nothing will shine");
    return scene;
}

}  // namespace zam::io
