#include "cli/scene_options.h"

#include <CLI/CLI.hpp>
#include <charconv>
#include <cstdlib>

#include "cli/exit_code.h"
#include "cli/messages.h"
#include "host/text.h"
#include "io/read_scene.h"
#include "io/values.h"

namespace zam::cli {
namespace {

// "1280x720"
void parse_size(const std::string& text, io::GltfOptions& options) {
    int width = 0, height = 0;
    const char* end = text.data() + text.size();
    const auto first = std::from_chars(text.data(), end, width);
    bool valid = first.ec == std::errc() && first.ptr != end && *first.ptr == 'x';
    if (valid) {
        const auto second = std::from_chars(first.ptr + 1, end, height);
        valid = second.ec == std::errc() && second.ptr == end;
    }
    if (!valid || width < 1 || height < 1 || width > 30000 || height > 30000)
        throw UsageError("--size " + text +
                         ": this is no size\nhint: write width x height in pixels, such as "
                         "1920x1080; up to 30000 each");
    options.width = width;
    options.height = height;
}

// The parser's own range lets "nan" pass, which is neither below nor above anything.
CLI::Validator within(double least, double most) {
    return {[least, most](std::string& text) {
                const double number = std::strtod(text.c_str(), nullptr);
                if (number >= least && number <= most) return std::string();
                return "this is no number from " + format_number(least) + " to " + format_number(most);
            },
            ""};
}

// "auto" or a number of candela
void parse_light_scale(const std::string& text, io::GltfOptions& options) {
    if (text == "auto") return;
    double candela = 0.0;
    const char* end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, candela);
    if (read.ec != std::errc() || read.ptr != end || !(candela >= 1e-12) || !(candela <= 1e12))
        throw UsageError("--light-scale " + text +
                         ": this is no light scale\nhint: write auto, or how many candela make 100 %");
    options.light_scale = candela;
}

io::GltfOptions gltf_options(const SceneOptions& options) {
    io::GltfOptions gltf;
    if (!options.size.empty()) parse_size(options.size, gltf);
    if (options.frame_rate) gltf.frame_rate = io::ratio_of(*options.frame_rate);
    if (options.pixels_per_metre) gltf.pixels_per_metre = *options.pixels_per_metre;
    if (!options.light_scale.empty()) parse_light_scale(options.light_scale, gltf);
    gltf.camera = options.camera;
    const bool told = !options.size.empty() || !options.camera.empty() || options.frame_rate ||
                      options.pixels_per_metre || !options.light_scale.empty();
    if (told && !io::is_gltf(options.file))
        throw UsageError(
            "--size, --fps, --pixels-per-metre, --light-scale and --camera are for glTF scenes\n"
            "hint: " +
            options.file + " says these things itself");
    return gltf;
}

}  // namespace

void add_scene_options(CLI::App& command, SceneOptions& options) {
    const auto add = [&](const char* name, auto& target, const char* value, const char* text) {
        return command.add_option(name, target, text)->option_text(value);
    };
    add("SCENE", options.file, "", "Composition (.json) or glTF 2.0 scene (.gltf, .glb)");
    const char* gltf = "glTF scenes";
    add("--size", options.size, "WxH", "Size of the composition [1920x1080]")->group(gltf);
    add("--fps", options.frame_rate, "NUMBER", "Frames per second [24]")
        ->check(within(1.0, 999.0))
        ->group(gltf);
    add("--pixels-per-metre", options.pixels_per_metre, "NUMBER", "Pixels for a metre [100]")
        ->check(within(0.001, 100000.0))
        ->group(gltf);
    add("--light-scale", options.light_scale, "auto|CANDELA",
        "Candela that make 100 %; auto: those of the brightest light [auto]")
        ->group(gltf);
    add("--camera", options.camera, "NAME", "Camera to look through [the first]")->group(gltf);
}

io::Scene load_scene(const SceneOptions& options, bool quiet, const std::string& example) {
    if (options.file.empty()) throw UsageError("no scene is given\nhint: " + example);
    io::Scene scene = io::read_scene(options.file, gltf_options(options));
    for (const std::string& warning : scene.warnings) print_warning(warning);
    if (!quiet)
        for (const std::string& note : scene.notes) print_note(note);
    return scene;
}

}  // namespace zam::cli
