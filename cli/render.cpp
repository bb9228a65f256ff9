#include "cli/render.h"

#include <CLI/CLI.hpp>
#include <charconv>
#include <filesystem>
#include <map>
#include <set>

#include "cli/exit_code.h"
#include "cli/frame_list.h"
#include "cli/messages.h"
#include "cli/name_pattern.h"
#include "cli/progress.h"
#include "cli/settings.h"
#include "host/runner/session.h"
#include "io/over.h"
#include "io/png_writer.h"
#include "io/read_scene.h"
#include "io/text.h"
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

// "auto" or a number of candela
void parse_light_scale(const std::string& text, io::GltfOptions& options) {
    if (text == "auto") return;
    double candela = 0.0;
    const char* end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, candela);
    if (read.ec != std::errc() || read.ptr != end || !(candela > 0.0) || !(candela <= 1e12))
        throw UsageError("--light-scale " + text +
                         ": this is no light scale\nhint: write auto, or how many candela make 100 %");
    options.light_scale = candela;
}

io::GltfOptions gltf_options(const RenderOptions& options) {
    io::GltfOptions gltf;
    if (!options.size.empty()) parse_size(options.size, gltf);
    if (options.frame_rate) gltf.frame_rate = io::ratio_of(*options.frame_rate);
    if (options.pixels_per_metre) gltf.pixels_per_metre = *options.pixels_per_metre;
    if (!options.light_scale.empty()) parse_light_scale(options.light_scale, gltf);
    gltf.camera = options.camera;
    const bool told = !options.size.empty() || !options.camera.empty() || options.frame_rate ||
                      options.pixels_per_metre || !options.light_scale.empty();
    if (told && !io::is_gltf(options.scene))
        throw UsageError(
            "--size, --fps, --pixels-per-metre, --light-scale and --camera are for glTF scenes\n"
            "hint: " +
            options.scene + " says these things itself");
    return gltf;
}

host::RenderSettings render_settings(const RenderOptions& options) {
    host::RenderSettings settings;
    settings.depth = options.depth == 16 ? host::Depth::bits16 : host::Depth::bits8;
    const std::uint32_t divisor = options.resolution == "half" ? 2 : options.resolution == "quarter" ? 4 : 1;
    settings.downsample_x = settings.downsample_y = host::Ratio{1, divisor};
    return settings;
}

// Nothing, unless the frames are to be laid over a colour.
std::optional<host::Color> background_of(const RenderOptions& options) {
    if (options.over.empty()) return std::nullopt;
    const auto color = io::parse_hex_color(options.over);
    if (!color)
        throw UsageError("--over " + options.over + ": this is no colour\nhint: write it as '#rrggbb'");
    return color;
}

std::vector<int> chosen_frames(const RenderOptions& options, const host::Composition& composition) {
    if (!options.frames.empty()) return parse_frames(options.frames, composition.duration);
    std::vector<int> frames;
    for (int i = 0; i < composition.work_area_duration; ++i)
        frames.push_back(composition.work_area_start + i);
    return frames;
}

// What the plug-in said during a command; throws when it was an error. Repeated warnings are told once.
void check(const host::Outcome& outcome, const std::string& command, std::set<std::string>& told,
           Progress* progress) {
    const std::string said = outcome.message.empty() ? "" : ": " + outcome.message;
    if (outcome.thrown)
        throw host::PluginError(command + ": the plug-in threw " + std::to_string(*outcome.thrown) + said);
    if (outcome.error != 0)
        throw host::PluginError(command + ": the plug-in returned error " + std::to_string(outcome.error) +
                                said);
    if (outcome.message_is_error) throw host::PluginError(command + said);
    std::vector<std::string> warnings = outcome.reports;
    if (!outcome.message.empty()) warnings.push_back("the plug-in says" + said);
    for (const std::string& warning : warnings) {
        if (!told.insert(warning).second) continue;
        if (progress) progress->clear();
        print_warning(command + ": " + warning);
    }
}

// The effect passes over such layers without a word.
void warn_of_useless_reach(const host::Composition& composition, const host::Layer& layer) {
    const bool own = layer.id == composition.effect.layer;
    const bool flat = !layer.three_d &&
                      (layer.kind == host::LayerKind::solid || layer.kind == host::LayerKind::null_object);
    if (!own && !flat) return;
    print_warning("control \"Set Reach Layer\": layer " + io::quote(layer.name) +
                  (own ? " carries the effect" : " is a 2D layer") +
                  ", so the cones end at \"Reach\"; choose another 3D layer");
}

// Layer controls that the plug-in supervises do their work only when a user picks a layer in them.
void pick_layers(host::Session& session, const host::Composition& composition,
                 const std::vector<host::ControlSetting>& settings, std::set<std::string>& told) {
    const std::vector<host::Control>& controls = session.controls();
    std::map<int, host::LayerId> picked;  // of several settings of one control the last counts
    for (const host::ControlSetting& setting : settings) {
        const host::Control& control = host::find_control(controls, setting.control);
        if (control.type != PF_Param_LAYER || !(control.flags & PF_ParamFlag_SUPERVISE)) continue;
        const host::ResolvedSetting resolved = host::resolve_setting(controls, setting, composition);
        picked[control.index] = static_cast<host::LayerId>(resolved.value.at(0.0));
    }
    for (const auto& [index, layer] : picked) {
        const host::Layer* chosen = composition.find_layer(layer);
        if (chosen && controls[static_cast<std::size_t>(index - 1)].name == "Set Reach Layer")
            warn_of_useless_reach(composition, *chosen);
        check(session.choose_layer(index, layer, 0.0), "choosing layer " + std::to_string(layer), told,
              nullptr);
    }
}

// Applies the scene's settings, then the command line's, which come last and therefore win.
void apply_settings(host::Session& session, host::Composition& composition, const RenderOptions& options,
                    std::set<std::string>& told) {
    session.apply_settings(composition.effect);
    host::EffectSettings given;
    given.layer = composition.effect.layer;
    for (const std::string& text : options.settings)
        given.controls.push_back(parse_setting(text, session.controls()));
    try {
        if (!given.controls.empty()) session.apply_settings(given);
    } catch (const host::ControlError& error) {
        throw UsageError(error.what());
    }
    std::vector<host::ControlSetting> all = composition.effect.controls;
    all.insert(all.end(), given.controls.begin(), given.controls.end());
    pick_layers(session, composition, all, told);
}

}  // namespace

CLI::App* add_render(CLI::App& app, RenderOptions& options) {
    CLI::App* sub = app.add_subcommand("render", "Render a scene into PNG files with straight alpha");
    const auto add = [&](const char* name, auto& target, const char* value, const char* text) {
        return sub->add_option(name, target, text)->option_text(value);
    };
    add("SCENE", options.scene, "", "Composition (.json) or glTF 2.0 scene (.gltf, .glb)");
    add("-o,--output", options.output, "FILES", "Image files, with # for the frame: 'out/light.####.png'");
    add("--frames", options.frames, "LIST", "5, 0-47, 0-47x2 or 1,5,9 [the work area]");
    add("--depth", options.depth, "8|16", "Bits per channel [8]")->check(CLI::IsMember({8, 16}));
    add("--resolution", options.resolution, "WORD", "full, half or quarter [full]")
        ->check(CLI::IsMember({"full", "half", "quarter"}));
    add("--set", options.settings, "CONTROL=VALUE", "'Look=Strong', 'Spot Lights/Reach=800'; may be repeated")
        ->allow_extra_args(false);
    add("--over", options.over, "COLOUR", "Lay the light over a plain colour, '#101018', to look at it");
    add("--plugin", options.plugin, "FILE", "Plug-in [Zam.so beside this program]");
    add("--threads", options.threads, "N", "Threads to render rows on [one per core]")
        ->check(CLI::Range(0, 256));
    sub->add_flag("-q,--quiet", options.quiet, "Show no progress and no notes");

    const char* gltf = "glTF scenes";
    add("--size", options.size, "WxH", "Size of the composition [1920x1080]")->group(gltf);
    add("--fps", options.frame_rate, "NUMBER", "Frames per second [24]")
        ->check(CLI::Range(1.0, 999.0))
        ->group(gltf);
    add("--pixels-per-metre", options.pixels_per_metre, "NUMBER", "Pixels for a metre [100]")
        ->check(CLI::Range(0.001, 100000.0))
        ->group(gltf);
    add("--light-scale", options.light_scale, "auto|CANDELA",
        "Candela that make 100 %; auto: those of the brightest light [auto]")
        ->group(gltf);
    add("--camera", options.camera, "NAME", "Camera to look through [the first]")->group(gltf);
    return sub;
}

void render(const RenderOptions& options) {
    if (options.scene.empty())
        throw UsageError("render: no scene is given\nhint: zam render SCENE -o 'out/light.####.png'");
    if (options.output.empty())
        throw UsageError("render: no output is given\nhint: add -o 'out/light.####.png'");
    static_cast<void>(NamePattern(options.output, false));
    const std::optional<host::Color> background = background_of(options);

    io::Scene scene = io::read_scene(options.scene, gltf_options(options));
    for (const std::string& warning : scene.warnings) print_warning(warning);
    if (!options.quiet)
        for (const std::string& note : scene.notes) print_note(note);
    host::Composition& composition = scene.composition;
    const std::vector<int> frames = chosen_frames(options, composition);
    const NamePattern names(options.output, frames.size() > 1);

    const host::Plugin plugin(plugin_file(options.plugin));
    host::SessionOptions session_options;
    session_options.threads = options.threads;
    host::Session session(plugin, composition, session_options);
    session.start();
    std::set<std::string> told;
    apply_settings(session, composition, options, told);

    io::make_folders_for(options.output);
    const auto style = options.quiet ? Progress::Style::silent : Progress::style_for(stderr);
    Progress progress(stderr, style, static_cast<int>(frames.size()));
    const host::RenderSettings settings = render_settings(options);
    for (const int frame : frames) {
        host::Frame image = session.render(frame, settings);
        check(image.outcome, "frame " + std::to_string(frame), told, &progress);
        if (background) io::lay_over(*background, &image);
        const std::string file = names.file(frame);
        io::write_png(file, image);
        progress.frame_done(frame, file);
    }
    progress.clear();
    session.stop();
    if (!options.quiet)
        std::fprintf(stderr, "%zu %s in %s\n", frames.size(), frames.size() == 1 ? "frame" : "frames",
                     clock_text(progress.seconds()).c_str());
}

std::string plugin_file(const std::string& given) {
    if (!given.empty()) return given;
    std::error_code code;
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", code);
    return (program.parent_path() / "Zam.so").string();
}

}  // namespace zam::cli
