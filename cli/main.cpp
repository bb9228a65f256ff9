// The program `zam`: a host without After Effects on the command line.
#include <CLI/CLI.hpp>
#include <cstdio>
#include <new>

#include "cli/controls.h"
#include "cli/exit_code.h"
#include "cli/messages.h"
#include "cli/render.h"
#include "cli/version.h"
#include "io/png_writer.h"
#include "io/scene_error.h"
#include "io/text.h"

namespace zam::cli {
namespace {

// The parser collects what it does not know; the first of it is told, with what it may have been meant to be.
void refuse_unknown(const CLI::App& app) {
    const std::vector<std::string> unknown = app.remaining();
    if (unknown.empty()) return;
    std::string word = unknown.front();
    for (const std::string& other : unknown)
        if (other.starts_with("-")) {
            word = other.substr(0, other.find('='));
            break;
        }
    const bool option = word.starts_with("-");
    std::vector<std::string> known;
    if (option) {
        for (const CLI::Option* each : app.get_options())
            for (const std::string& name : each->get_lnames()) known.push_back("--" + name);
    } else {
        for (const CLI::App* each : app.get_subcommands(nullptr)) known.push_back(each->get_name());
    }
    const std::string near = io::nearest(word, known);
    const std::string command = app.get_parent() ? "zam " + app.get_name() : "zam";
    throw UsageError(
        (option ? "unknown option " : "unexpected ") + word + "\nhint: " +
        (near.empty() ? command + " --help lists all that there is" : "did you mean " + near + "?"));
}

void run(CLI::App& app, CLI::App* render_command, const RenderOptions& render_options,
         CLI::App* controls_command, const ControlsOptions& controls_options) {
    refuse_unknown(app);
    for (const CLI::App* command : app.get_subcommands()) refuse_unknown(*command);
    if (render_command->parsed()) {
        render(render_options);
    } else if (controls_command->parsed()) {
        print_controls(controls_options);
    } else {
        throw UsageError("no command is given\nhint: zam --help tells what there is");
    }
}

ExitCode main(int argc, char** argv) {
    CLI::App app("Renders the light of a composition's 3D lights, made visible by the plug-in.", "zam");
    app.set_version_flag("--version", [] { return version_text(ZAM_VERSION); });
    app.footer(kExitCodes);
    app.allow_extras();
    RenderOptions render_options;
    ControlsOptions controls_options;
    CLI::App* render_command = add_render(app, render_options);
    CLI::App* controls_command = add_controls(app, controls_options);
    for (CLI::App* command : {render_command, controls_command}) {
        command->footer(kExitCodes);
        command->allow_extras();
    }
    try {
        app.parse(argc, argv);
    } catch (const CLI::Success& request) {  // --help, --version
        return static_cast<ExitCode>(app.exit(request));
    } catch (const CLI::ParseError& error) {
        print_error(error.what() + std::string("\nhint: zam --help tells what there is"));
        return ExitCode::usage;
    }
    try {
        run(app, render_command, render_options, controls_command, controls_options);
        return ExitCode::ok;
    } catch (const UsageError& error) {
        print_error(error.what());
        return ExitCode::usage;
    } catch (const io::SceneError& error) {
        print_error(error.what());
        return ExitCode::bad_input;
    } catch (const host::ControlError& error) {
        print_error(error.what());
        return ExitCode::bad_input;
    } catch (const host::PluginError& error) {
        print_error(error.what());
        return ExitCode::plugin;
    } catch (const io::WriteError& error) {
        print_error(error.what());
        return ExitCode::cannot_write;
    } catch (const std::bad_alloc&) {
        print_error("not enough memory; use a smaller composition or a lower --resolution");
    } catch (const std::exception& error) {
        print_error(std::string("internal error: ") + error.what());
    }
    return ExitCode::internal;
}

}  // namespace
}  // namespace zam::cli

int main(int argc, char** argv) { return static_cast<int>(zam::cli::main(argc, argv)); }
