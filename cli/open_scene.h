#pragma once
// A scene with the effect at work in it, for every command that asks the effect about a scene.
#include <string>
#include <vector>

#include "cli/plugin_answers.h"
#include "cli/scene_digest.h"
#include "cli/scene_options.h"
#include "host/runner/session.h"

namespace zam::cli {

struct OpenOptions {
    SceneOptions scene;
    std::string plugin, preset;
    std::vector<std::string> settings;
    int threads = 0;
    // That are read: the scene, and the preset if there is one.
    [[nodiscard]] std::vector<std::string> files() const;
};

// Adds SCENE and what goes with it, --set, --preset, --plugin and --threads; `options` must outlive the parsing.
void add_open_options(CLI::App& command, OpenOptions& options);

// How the program runs every effect: on so many threads, and giving up a frame when an interrupt was caught.
[[nodiscard]] host::SessionOptions session_options(int threads);

// The scene, and a started session with all its controls set.
class OpenScene {
  public:
    // As load_scene(); throws host::ControlError (of the scene) and host::PluginError, too.
    OpenScene(const OpenOptions& options, bool quiet, const std::string& example);
    OpenScene(const OpenScene&) = delete;
    OpenScene& operator=(const OpenScene&) = delete;

    host::Composition composition;  // as the effect sees it: with the reach light that it may have added
    const host::Plugin plugin;
    host::Session session;
    PluginAnswers answers;
    const GivenControls given;  // by --set
};

// A frame's number from the command line, "12"; empty: `usual`. Throws UsageError for frames that the composition has
// not.
[[nodiscard]] int parse_frame(const std::string& text, int usual, const host::Composition& composition);

}  // namespace zam::cli
