#include "tests/fuzz/target.h"

#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <set>

#include "host/composition/transforms.h"
#include "host/text.h"

namespace zam::fuzz {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kLongestMessage = 4096;
constexpr double kFarthest = 1e9;          // at keys: pixels, percent, degrees
constexpr double kFarthestBetween = 1e18;  // an ease may overshoot: the steepest, over the longest span

bool sane(double number, double most = kFarthest) { return std::abs(number) <= most; }
bool sane(const host::Vec3& v, double most = kFarthest) {
    return sane(v.x, most) && sane(v.y, most) && sane(v.z, most);
}
bool sane(const host::Color& c, double = 1.0) {
    for (const double part : {c.red, c.green, c.blue})
        if (!(part >= 0.0 && part <= 1.0)) return false;
    return true;
}
bool sane(const host::Matrix& matrix, double most = kFarthest) {
    for (const auto& row : matrix.at)
        for (const double entry : row)
            if (!sane(entry, most)) return false;
    return true;
}
bool sane(const host::ControlValue& value, double most = kFarthest) {
    const double* number = std::get_if<double>(&value);
    return !number || sane(*number, most);
}

template <class T>
void require_sane(const host::Animated<T>& value, const char* what) {
    require(sane(value.constant), what);
    for (std::size_t i = 0; i < value.keys.size(); ++i) {
        require(sane(value.keys[i].frame) && sane(value.keys[i].value), what);
        if (i == 0) continue;
        const double before = value.keys[i - 1].frame, after = value.keys[i].frame;
        require(before < after, std::string(what) + ": keys ascend");
        if (i < 8) require(sane(value.at(before + (after - before) * 0.37), kFarthestBetween), what);
    }
}

void require_valid(const host::Layer& layer, const host::Composition& composition) {
    const host::Transform& t = layer.transform;
    for (const auto* v : {&t.anchor, &t.position, &t.scale, &t.orientation}) require_sane(*v, "transform");
    for (const auto* v : {&t.rotation_x, &t.rotation_y, &t.rotation_z}) require_sane(*v, "rotation");
    if (t.point_of_interest) require_sane(*t.point_of_interest, "point of interest");
    if (layer.world) require_sane(*layer.world, "matrix");
    const host::LightSettings& light = layer.light;
    require_sane(light.color, "color");
    for (const auto* v :
         {&light.intensity, &light.cone_angle, &light.cone_feather, &light.shadow_darkness,
          &light.shadow_diffusion, &light.falloff, &light.falloff_start, &light.falloff_distance})
        require_sane(*v, "light");
    require_sane(layer.camera.zoom, "zoom");
    if (layer.kind == host::LayerKind::camera) require(layer.camera.zoom.at(0.0) > 0.0, "zoom above 0");
    require(layer.in_frame < layer.out_frame && sane(layer.start_frame) && layer.stretch > 0.0,
            "layer times");
    require(layer.parent == 0 || composition.find_layer(layer.parent), "parent");
    require(layer.source == 0 || composition.find_item(layer.source), "source");
}

// In memory, where there is such a place: nothing wears out.
struct Folder {
    fs::path path = (fs::is_directory("/dev/shm") ? "/dev/shm" : fs::temp_directory_path()) /
                    ("zam_fuzz_" + std::to_string(getpid()));
    Folder() { fs::create_directories(path); }
    ~Folder() { fs::remove_all(path); }
};

}  // namespace

void require(bool holds, const std::string& what) {
    if (holds) return;
    std::fprintf(stderr, "does not hold: %s\n", what.c_str());
    std::abort();
}

void require_clear_line(const std::string& line) {
    require(!line.empty() && line.size() <= kLongestMessage,
            "a message is neither empty nor endless: " + line);
    require(printable(line) == line, "a message is one line of text without control characters: " + line);
}

void require_clear_message(const std::string& message) {
    const std::size_t end = message.find('\n');
    require_clear_line(message.substr(0, end));
    if (end == std::string::npos) return;
    require(message.compare(end + 1, 6, "hint: ") == 0, "the second line is a hint: " + message);
    require_clear_line(message.substr(end + 1));
}

void require_valid(const host::Composition& composition) {
    require(composition.width >= 1 && composition.width <= 30000, "width");
    require(composition.height >= 1 && composition.height <= 30000, "height");
    require(composition.frame_rate.value() >= 0.9 && composition.frame_rate.value() <= 1000.0, "frame rate");
    require(composition.pixel_aspect.value() > 0.0 && sane(composition.pixel_aspect.value()), "pixel aspect");
    require(composition.duration >= 1 && composition.work_area_start >= 0 &&
                composition.work_area_duration >= 1 &&
                composition.work_area_start + composition.work_area_duration <= composition.duration,
            "work area");
    std::set<host::LayerId> ids;
    for (const host::Layer& layer : composition.layers) {
        require(layer.id > 0 && ids.insert(layer.id).second, "layer ids");
        require_valid(layer, composition);
        static_cast<void>(host::world_from_layer(composition, layer, 0.0));
    }
    const host::Layer* carrier = composition.find_layer(composition.effect.layer);
    require(carrier && carrier->kind == host::LayerKind::solid && carrier->source != 0, "the effect's layer");
    require_valid(composition.effect.controls);
}

void require_valid(const std::vector<host::ControlSetting>& settings) {
    for (const host::ControlSetting& setting : settings) {
        require_sane(setting.value, "control");
        require_clear_line(setting.where);
    }
}

std::string file_of(std::string_view bytes, const std::string& name) {
    static const Folder folder;
    const fs::path file = folder.path / name;
    std::ofstream stream(file, std::ios::binary);
    stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    stream.close();
    require(stream.good(), "the input can be written to " + file.string());
    return file.string();
}

}  // namespace zam::fuzz
