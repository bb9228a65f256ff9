#include "cli/convert.h"

#include <CLI/CLI.hpp>
#include <filesystem>

#include "cli/exit_code.h"
#include "cli/parse_setting.h"
#include "cli/plugin_answers.h"
#include "cli/preset.h"
#include "cli/scene_options.h"
#include "cli/settings.h"
#include "host/runner/session.h"
#include "io/composition_reader.h"
#include "io/composition_writer.h"
#include "io/read_scene.h"
#include "io/scene_error.h"
#include "io/whole_file.h"

namespace zam::cli {
namespace {

constexpr const char* kExample = "zam convert stage.glb -o stage.json --size 1280x720 --fps 25";

struct Options {
    SceneOptions scene;
    std::string output, preset, plugin;
    std::vector<std::string> settings;
    bool quiet = false;
};

// The controls of the preset and the command line become the scene's own.
void add_controls(const Options& options, host::Composition& composition) {
    add_preset(options.preset, composition);
    if (options.settings.empty()) return;
    host::Composition seen = composition;  // the effect may change it
    const host::Plugin plugin(plugin_file(options.plugin));
    host::Session session(plugin, seen, {.threads = 1});
    session.start();
    PluginAnswers answers;
    static_cast<void>(apply_settings(session, seen, options.settings, answers));  // with all checks
    for (const std::string& text : options.settings)
        composition.effect.controls.push_back(parse_setting(text, session.controls()));
}

void check_output(const Options& options) {
    if (options.scene.file.empty()) throw UsageError(std::string("no scene is given\nhint: ") + kExample);
    if (options.output.empty()) throw UsageError("no output is given\nhint: add -o scene.json");
    if (std::filesystem::path(options.output).extension() != ".json")
        throw UsageError("-o " + options.output +
                         ": only JSON compositions are written\nhint: end the name in .json");
    std::error_code code;
    if (std::filesystem::equivalent(options.scene.file, options.output, code))
        throw UsageError("-o " + options.output + ": that is the scene itself\nhint: give another name");
}

std::string text_of(const host::Composition& composition, const std::string& file) {
    try {
        return io::composition_text(composition);
    } catch (const io::CompositionTooLarge& error) {
        throw io::SceneError(file, {}, error.what(),
                             io::is_gltf(file)
                                 ? "ask for fewer frames per second by --fps, or export a shorter "
                                   "range or fewer animated lights"
                                 : "split the scene");
    }
}

// What cannot be read again is no scene. The text has no name yet, and its lines mean nothing to anybody.
void check_text(const std::string& text, const std::string& file) {
    try {
        static_cast<void>(io::read_composition(io::parse_json("", text)));
    } catch (const io::SceneError& error) {
        const std::string told = error.what();
        const auto from = told.find(": ") + 2;
        throw io::SceneError(file, {},
                             "the scene has what a JSON composition cannot hold: " +
                                 told.substr(from, told.find("\nhint: ") - from),
                             "change that in the scene, or with the options for glTF scenes");
    }
}

void convert(const Options& options) {
    check_output(options);
    io::Scene scene = load_scene(options.scene, options.quiet, kExample);
    add_controls(options, scene.composition);
    const std::string text = text_of(scene.composition, options.scene.file);
    scene = {};
    check_text(text, options.scene.file);
    io::make_folders_for(options.output);
    io::WholeFile file(options.output);
    file.write(text.data(), text.size());
    file.keep();
}

}  // namespace

Command add_convert(CLI::App& app) {
    const auto options = std::make_shared<Options>();
    CLI::App* parser = app.add_subcommand(
        "convert",
        "Write any scene as a JSON composition that renders the same frames; notes are left behind");
    add_scene_options(*parser, options->scene);
    parser->add_option("-o,--output", options->output, "The composition")->option_text("FILE.json");
    parser->add_option("--preset", options->preset, "Controls to go into it, after the scene's own")
        ->option_text("NAME|FILE");
    parser->add_option("--set", options->settings, "A control to go into it: 'Look=Strong'; may be repeated")
        ->option_text("CONTROL=VALUE")
        ->allow_extra_args(false);
    add_plugin_option(*parser, options->plugin);
    parser->add_flag("-q,--quiet", options->quiet, "Show no notes");
    return {parser, [options] { convert(*options); }, kExample};
}

}  // namespace zam::cli
