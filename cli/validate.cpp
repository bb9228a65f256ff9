#include "cli/validate.h"

#include <CLI/CLI.hpp>
#include <cstdio>

#include "cli/exit_code.h"
#include "cli/messages.h"
#include "cli/open_scene.h"
#include "cli/output.h"
#include "io/scene_error.h"

namespace zam::cli {
namespace {

constexpr const char* kExample = "zam validate shots/*.json stage.gltf";

struct Options {
    std::vector<std::string> files;
    std::string plugin;
};

// Reads it with all checks, and sets its controls as for a render.
bool is_good(const std::string& file, const std::string& plugin) {
    OpenOptions open;
    open.scene.file = file;
    open.plugin = plugin;
    open.threads = 1;
    std::string wrong;
    try {
        const OpenScene scene(open, true, kExample);
        return true;
    } catch (const io::SceneError& error) {
        wrong = error.what();
    } catch (const host::ControlError& error) {
        wrong = error.what();
    }
    print_error(wrong, static_cast<int>(ExitCode::bad_input));
    return false;
}

void validate(const Options& options) {
    if (options.files.empty()) throw UsageError(std::string("no scene is given\nhint: ") + kExample);
    bool all = true;
    for (const std::string& file : options.files) {
        const bool good = is_good(file, options.plugin);
        if (good) print_line(file + ": ok");
        std::fflush(stdout);  // stderr may go to the same place
        all = all && good;
    }
    if (!all) throw Told{ExitCode::bad_input};
}

}  // namespace

Command add_validate(CLI::App& app) {
    const auto options = std::make_shared<Options>();
    CLI::App* parser =
        app.add_subcommand("validate", "Read scenes and their controls with all checks, without rendering");
    parser->add_option("SCENE", options->files, "Compositions (.json) or glTF 2.0 scenes (.gltf, .glb)")
        ->option_text("...");
    add_plugin_option(*parser, options->plugin);
    return {parser, [options] { validate(*options); }, kExample};
}

}  // namespace zam::cli
