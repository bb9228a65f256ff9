#pragma once
// zam controls: the control table as the plug-in registered it.
#include <string>

namespace CLI {
class App;
}

namespace zam::cli {

struct ControlsOptions {
    std::string plugin;
    bool json = false;
};

// Adds the subcommand; `options` must outlive the parsing.
CLI::App* add_controls(CLI::App& app, ControlsOptions& options);

// Prints to stdout. Throws host::PluginError.
void print_controls(const ControlsOptions& options);

}  // namespace zam::cli
