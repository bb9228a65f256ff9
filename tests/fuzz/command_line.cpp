// The words after `zam render`, one a line. What they name is never opened: the scene is one of our own.
#include <CLI/CLI.hpp>
#include <sstream>

#include "cli/background.h"
#include "cli/exit_code.h"
#include "cli/frame_list.h"
#include "cli/messages.h"
#include "cli/name_pattern.h"
#include "cli/parse_setting.h"
#include "cli/render_options.h"
#include "io/scene_error.h"
#include "tests/fuzz/effect_controls.h"
#include "tests/fuzz/target.h"

namespace {

using namespace zam;

constexpr const char* kScene = R"({"asset": {"version": "2.0"},
  "extensions": {"KHR_lights_punctual": {"lights": [{"type": "spot", "spot": {}, "intensity": 800, "range": 9}]}},
  "cameras": [{"type": "perspective", "perspective": {"yfov": 0.7, "znear": 0.1}}],
  "nodes": [{"name": "Eye", "camera": 0, "translation": [0, 1, 5]},
            {"extensions": {"KHR_lights_punctual": {"light": 0}}, "translation": [1, 2, 0]}]})";

std::vector<std::string> words_of(std::string_view text) {
    std::vector<std::string> words;
    std::istringstream lines{std::string(text)};
    for (std::string line; words.size() < 40 && std::getline(lines, line);)
        words.emplace_back(line.c_str());  // no word of a command line holds a zero
    return words;
}

void use(cli::RenderOptions& options) {
    static const std::string scene_file = fuzz::file_of(kScene, "scene.gltf");
    options.scene.file = scene_file;
    static_cast<void>(cli::image_options(options));
    static_cast<void>(cli::render_settings(options));
    const io::Scene scene = cli::load_scene(options.scene, true, "zam render SCENE");
    fuzz::require_valid(scene.composition);
    if (!options.frames.empty()) {
        const std::vector<int> frames = cli::parse_frames(options.frames, 1000);
        fuzz::require(!frames.empty() && frames.size() <= 1000, "some frames, none twice");
        for (const int frame : frames) fuzz::require(frame >= 0 && frame < 1000, "frames of the scene");
    }
    const cli::NamePattern names(options.output);
    fuzz::require(names.varies() == (names.file(0) != names.file(1)), "frames have names of their own");
    const cli::Background background(options.over);
    for (const std::string& setting : options.settings)
        fuzz::require_resolves(cli::parse_setting(setting, fuzz::effect_controls()), scene.composition);
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::vector<std::string> words = words_of(fuzz::text_of(data, size));
    CLI::App app("", "zam");
    cli::RenderOptions options;
    cli::add_render_options(app, options)->allow_extras();
    words.insert(words.begin(), "render");
    std::reverse(words.begin(), words.end());  // so the parser wants them
    std::string refusal;
    try {
        app.parse(words);
        use(options);
    } catch (const CLI::Success&) {  // --help
    } catch (const CLI::ParseError& error) {
        refusal = error.what();
    } catch (const cli::UsageError& error) {
        refusal = error.what();
    } catch (const io::SceneError& error) {
        refusal = error.what();
    }
    for (const std::string& line : cli::message_lines(refusal)) fuzz::require_clear_line(line);
    return 0;
}
