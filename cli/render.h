#pragma once
// zam render: a scene through the plug-in into image files.
#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace zam::cli {

struct RenderOptions {
    std::string scene, output, frames, plugin;
    int depth = 8;
    std::string resolution = "full";
    std::vector<std::string> settings;
    std::string over;  // "#rrggbb"; empty: straight alpha
    int threads = 0;
    bool quiet = false;
    // glTF scenes only
    std::string size, camera, light_scale;
    std::optional<double> frame_rate, pixels_per_metre;
};

// Adds the subcommand; `options` must outlive the parsing.
CLI::App* add_render(CLI::App& app, RenderOptions& options);

// Throws UsageError, io::SceneError, io::WriteError, host::ControlError (of the scene) or host::PluginError.
void render(const RenderOptions& options);

// The plug-in beside the program, unless one is given.
[[nodiscard]] std::string plugin_file(const std::string& given);

}  // namespace zam::cli
