// glTF scenes, text and binary: a file, and one buffer beside it.
#include <numeric>

#include "io/gltf/read_gltf.h"
#include "io/scene_error.h"
#include "tests/fuzz/target.h"

namespace {

// Little-endian floats 0, 1, 2 ...: times that ascend, and values.
std::string floats() {
    float numbers[64];
    std::iota(std::begin(numbers), std::end(numbers), 0.0F);
    return {reinterpret_cast<const char*>(numbers), sizeof numbers};
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace zam;
    static const std::string buffer = fuzz::file_of(floats(), "floats.bin");
    const std::string file = fuzz::file_of(fuzz::text_of(data, size), "scene.gltf");
    io::GltfOptions options;
    options.width = 320;
    options.height = 180;
    try {
        const io::Scene scene = io::gltf::read_gltf(file, options);
        fuzz::require_valid(scene.composition);
        for (const std::string& warning : scene.warnings) fuzz::require_clear_line(warning);
        for (const std::string& note : scene.notes) fuzz::require_clear_line(note);
    } catch (const io::SceneError& error) {
        fuzz::require_clear_message(error.what());
        fuzz::require(std::string(error.what()).starts_with(file), "a refusal tells the file");
    }
    return 0;
}
