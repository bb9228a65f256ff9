#include "cli/preset.h"

#include <algorithm>
#include <filesystem>
#include <vector>

#include "host/runner/platform.h"
#include "host/text.h"
#include "host/utf8_path.h"
#include "io/control_settings.h"
#include "io/scene_error.h"

namespace zam::cli {
namespace {

namespace fs = std::filesystem;

fs::path own_presets() { return host::utf8_path(host::platform::this_program()).parent_path() / "presets"; }

[[noreturn]] void fail_with_names(const std::string& given) {
    std::vector<std::string> names;
    std::error_code code;
    for (const auto& entry : fs::directory_iterator(own_presets(), code))
        names.push_back(entry.path().stem().string());
    std::sort(names.begin(), names.end());
    const std::string near = nearest(given, names);
    throw io::SceneError(
        given, {}, "there is no such preset",
        near.empty() ? "use " + join_or(names) + ", or give a file" : "did you mean " + near + "?");
}

}  // namespace

std::string preset_file(const std::string& given) {
    std::error_code code;
    const fs::path path = host::utf8_path(given);
    if (given.empty() || path.has_parent_path() || fs::exists(path, code)) return given;
    for (const std::string& name : {given, given + ".json"})
        if (fs::is_regular_file(own_presets() / host::utf8_path(name), code))
            return (own_presets() / host::utf8_path(name)).string();
    return given;
}

void add_preset(const std::string& given, host::Composition& composition) {
    if (given.empty()) return;
    const std::string file = preset_file(given);
    std::error_code code;
    // A bare word means one of ours.
    if (!host::utf8_path(given).has_extension() && !fs::exists(host::utf8_path(file), code) &&
        fs::is_directory(own_presets(), code))
        fail_with_names(given);
    for (auto& setting : io::read_preset(file, composition.frame_rate.value()))
        composition.effect.controls.push_back(std::move(setting));
}

}  // namespace zam::cli
