#pragma once
// The scene on the command line, for every command that reads one.
#include <optional>
#include <string>

#include "io/scene.h"

namespace CLI {
class App;
}

namespace zam::cli {

struct SceneOptions {
    std::string file;
    // glTF scenes only
    std::string size, camera, light_scale;
    std::optional<double> frame_rate, pixels_per_metre;
};

// Adds SCENE and what goes with it; `options` must outlive the parsing.
void add_scene_options(CLI::App& command, SceneOptions& options);

// Reads the scene and tells its warnings, and its notes unless `quiet`. `example` is the command as it could be
// written, for the message when there is no scene. Throws UsageError and io::SceneError.
[[nodiscard]] io::Scene load_scene(const SceneOptions& options, bool quiet, const std::string& example);

}  // namespace zam::cli
