#pragma once
// zam render on the command line.
#include <string>
#include <vector>

#include "cli/open_scene.h"
#include "host/runner/session.h"
#include "io/images/image.h"

namespace zam::cli {

struct RenderOptions : OpenOptions {
    std::string output, frames;
    int bits = 0;  // per channel; 0: what the format usually has
    std::string resolution = "full", color = "linear", log = "text";
    std::string over;
    bool dither = false, skip_existing = false, quiet = false;
};

// Adds the subcommand; `options` must outlive the parsing.
CLI::App* add_render_options(CLI::App& app, RenderOptions& options);

// What the options come to. Throw UsageError when they contradict each other.
[[nodiscard]] io::ImageOptions image_options(const RenderOptions& options);
[[nodiscard]] host::RenderSettings render_settings(const RenderOptions& options);

}  // namespace zam::cli
