#include "cli/open_scene.h"

#include <CLI/CLI.hpp>
#include <charconv>

#include "cli/exit_code.h"
#include "cli/interrupt.h"
#include "cli/preset.h"
#include "cli/settings.h"

namespace zam::cli {
namespace {

host::Composition read_composition(const OpenOptions& options, bool quiet, const std::string& example) {
    host::Composition composition = load_scene(options.scene, quiet, example).composition;
    add_preset(options.preset, composition);
    return composition;
}

// Starts the session, for what is set in it.
host::Session& started(host::Session& session) {
    session.start();
    return session;
}

}  // namespace

host::SessionOptions session_options(int threads) {
    host::SessionOptions options;
    options.threads = threads;
    options.cancelled = [] { return caught_signal() != 0; };
    return options;
}

std::vector<std::string> OpenOptions::files() const {
    if (preset.empty()) return {scene.file};
    return {scene.file, preset_file(preset)};
}

void add_open_options(CLI::App& command, OpenOptions& options) {
    const auto add = [&](const char* name, auto& target, const char* value, const std::string& text) {
        return command.add_option(name, target, text)->option_text(value);
    };
    add_scene_options(command, options.scene);
    add("--set", options.settings, "CONTROL=VALUE", "'Look=Strong', 'Spot Lights/Reach=800'; may be repeated")
        ->allow_extra_args(false);
    add("--preset", options.preset, "NAME|FILE",
        "Controls of a look that comes along, or from a file; after the scene's and before --set");
    add_plugin_option(command, options.plugin);
    add("--threads", options.threads, "N",
        "Threads that render rows, and as many at most that make files of them; up to 256 are used "
        "[0: one per core it may use]")
        ->check(CLI::Range(0, 1'000'000));
}

OpenScene::OpenScene(const OpenOptions& options, bool quiet, const std::string& example)
    : composition(read_composition(options, quiet, example)),
      plugin(plugin_file(options.plugin)),
      session(plugin, composition, session_options(options.threads)),
      given(apply_settings(started(session), composition, options.settings, answers)) {}

int parse_frame(const std::string& text, int usual, const host::Composition& composition) {
    if (text.empty()) return usual;
    int frame = 0;
    const char* end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, frame);
    if (read.ec != std::errc() || read.ptr != end || frame < 0 || frame >= composition.duration)
        throw UsageError("--frame " + text + ": there is no such frame\nhint: the scene has the frames 0-" +
                         std::to_string(composition.duration - 1));
    return frame;
}

}  // namespace zam::cli
