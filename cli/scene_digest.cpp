#include "cli/scene_digest.h"

#define XXH_INLINE_ALL
#include <xxhash.h>

#include <cstdio>
#include <fstream>
#include <map>
#include <type_traits>

#include "io/scene_error.h"

namespace zam::cli {
namespace {

class Digest {
  public:
    Digest() { XXH3_128bits_reset(&state_); }
    void add(const void* bytes, std::size_t count) { XXH3_128bits_update(&state_, bytes, count); }

    template <class T>
    requires std::is_arithmetic_v<T> || std::is_enum_v<T>
    void add(T value) { add(&value, sizeof value); }
    void add(const std::string& text) {
        add(text.size());
        add(text.data(), text.size());
    }
    void add(const host::Ratio& ratio) {
        add(ratio.num);
        add(ratio.den);
    }
    void add(const host::Vec3& v) {
        for (const double part : {v.x, v.y, v.z}) add(part);
    }
    void add(const host::Color& c) {
        for (const double part : {c.red, c.green, c.blue}) add(part);
    }
    template <class T>
    void add(const host::Animated<T>& animated) {
        add(animated.constant);
        add(animated.keys.size());
        for (const auto& key : animated.keys) {
            add(key.frame);
            add(key.value);
        }
    }

    [[nodiscard]] std::string text() const {
        const XXH128_hash_t hash = XXH3_128bits_digest(&state_);
        char digits[33];
        std::snprintf(digits, sizeof digits, "%016llx%016llx", static_cast<unsigned long long>(hash.high64),
                      static_cast<unsigned long long>(hash.low64));
        return digits;
    }

  private:
    XXH3_state_t state_;
};

void add_file(const std::string& file, Digest& digest) {
    std::ifstream stream(file, std::ios::binary);
    std::vector<char> piece(1 << 20);
    while (stream) {
        stream.read(piece.data(), static_cast<std::streamsize>(piece.size()));
        digest.add(piece.data(), static_cast<std::size_t>(stream.gcount()));
    }
    if (!stream.eof())
        throw io::SceneError(file, {}, "cannot read the file a second time",
                             "zam reads scenes from files, not from pipes");
}

// What glTF leaves to the command line and to files beside it ends up here.
void add_layer(const host::Layer& layer, Digest& digest) {
    digest.add(layer.id);
    digest.add(layer.kind);
    digest.add(layer.name);
    digest.add(layer.transform.position);
    digest.add(layer.transform.orientation);
    if (layer.transform.point_of_interest) digest.add(*layer.transform.point_of_interest);
    digest.add(layer.light.type);
    digest.add(layer.light.intensity);
    digest.add(layer.light.color);
    digest.add(layer.light.cone_angle);
    digest.add(layer.light.cone_feather);
    digest.add(layer.light.shadow_diffusion);
    digest.add(layer.camera.zoom);
}

}  // namespace

std::string scene_digest(const std::vector<std::string>& files, const host::Composition& composition,
                         const GivenControls& given, const host::RenderSettings& settings) {
    Digest digest;
    for (const std::string& file : files) add_file(file, digest);
    digest.add(composition.width);
    digest.add(composition.height);
    digest.add(composition.frame_rate);
    for (const host::Layer& layer : composition.layers) add_layer(layer, digest);
    std::map<int, host::Animated<double>> controls;  // of several settings of one control the last counts
    for (const auto& [index, value] : given) controls[index] = value;
    for (const auto& [index, value] : controls) {
        digest.add(index);
        digest.add(value);
    }
    digest.add(settings.depth);
    digest.add(settings.downsample_x);
    digest.add(settings.downsample_y);
    return digest.text();
}

}  // namespace zam::cli
