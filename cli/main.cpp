// The program `zam`: a host without After Effects on the command line.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <new>
#include <string_view>
#include <system_error>
#include <vector>

#include "cli/check.h"
#include "cli/contact_sheet.h"
#include "cli/controls.h"
#include "cli/convert.h"
#include "cli/exit_code.h"
#include "cli/explain.h"
#include "cli/info.h"
#include "cli/interrupt.h"
#include "cli/messages.h"
#include "cli/platform.h"
#include "cli/render.h"
#include "cli/validate.h"
#include "cli/version.h"
#include "host/runner/session.h"
#include "host/text.h"
#include "io/scene_error.h"
#include "io/whole_file.h"

namespace zam::cli {
namespace {

// The parser collects what it does not know; the first of it is told, with what it may have been meant to be.
void refuse_unknown(const CLI::App& app) {
    const std::vector<std::string> unknown = app.remaining();
    if (unknown.empty()) return;
    std::string word = unknown.front();
    // Without a command its name is what is wrong, and its options cannot be known; behind one they are.
    const bool no_command = !app.get_parent() && app.get_subcommands().empty();
    const auto wanted = std::find_if(unknown.begin(), unknown.end(), [&](const std::string& other) {
        return other.starts_with("-") != no_command;
    });
    if (wanted != unknown.end()) word = wanted->substr(0, wanted->find('='));
    const bool option = word.starts_with("-");
    std::vector<std::string> known;
    if (option) {
        for (const CLI::Option* each : app.get_options())
            for (const std::string& name : each->get_lnames()) known.push_back("--" + name);
    } else {
        for (const CLI::App* each : app.get_subcommands(nullptr)) known.push_back(each->get_name());
    }
    const std::string near = nearest(word, known);
    const std::string command = app.get_parent() ? "zam " + app.get_name() : "zam";
    throw UsageError(
        (option ? "unknown option " : "unexpected ") + word + "\nhint: " +
        (near.empty() ? command + " --help lists all that there is" : "did you mean " + near + "?"));
}

void run(const CLI::App& app, const std::vector<Command>& commands) {
    refuse_unknown(app);
    for (const CLI::App* parser : app.get_subcommands()) refuse_unknown(*parser);
    for (const Command& command : commands)
        if (command.parser->parsed()) return command.run();
    throw UsageError("no command is given\nhint: zam --help tells what there is");
}

// What a script leaves of a variable that it forgot to set.
std::string refuse_empty(const std::string& value) { return value.empty() ? "the value is empty" : ""; }

// The messages of a wrong command line are JSON as well, and they come before the line is understood.
bool asks_for_json(int argc, char** argv) {
    for (int i = 1; i < argc; ++i) {
        const std::string_view word = argv[i];
        if (word == "--log=json" ||
            (word == "--log" && i + 1 < argc && argv[i + 1] == std::string_view("json")))
            return true;
    }
    return false;
}

// The command whose options could not be read, or the program itself.
std::string helpful(const CLI::App& app) {
    for (const CLI::App* parser : app.get_subcommands()) return "zam " + parser->get_name();
    return "zam";
}

int fail(ExitCode code, const std::string& text) {
    print_error(text, static_cast<int>(code));
    return static_cast<int>(code);
}

int main(int argc, char** argv) {
    if (is_check_child(argc, argv)) return check_child(argv);
    platform::prepare_process();
    CLI::App app("Renders the light of a composition's 3D lights, made visible by the plug-in.", "zam");
    app.set_version_flag("--version", version_text);
    app.footer(kExitCodes);
    app.allow_extras();
    app.allow_windows_style_options(false);  // a leading / begins a path everywhere
    const std::vector<Command> commands = {add_render(app),   add_info(app),    add_validate(app),
                                           add_convert(app),  add_explain(app), add_contact_sheet(app),
                                           add_controls(app), add_check(app)};
    for (const Command& command : commands) {
        const std::string example = command.example;
        command.parser->footer((example.empty() ? "" : "Example:\n  " + example + "\n\n") + kExitCodes);
        command.parser->allow_extras();
        for (CLI::Option* option : command.parser->get_options())
            if (option->get_items_expected_max() > 0) option->check(refuse_empty);
    }
    if (asks_for_json(argc, argv)) tell_in_json();
    try {
        app.parse(argc, argv);
    } catch (const CLI::Success& request) {  // --help, --version
        return app.exit(request);
    } catch (const CLI::ParseError& error) {
        return fail(ExitCode::usage,
                    error.what() + ("\nhint: " + helpful(app) + " --help tells what there is"));
    }
    try {
        run(app, commands);
        return static_cast<int>(ExitCode::ok);
    } catch (const Told& told) {
        return static_cast<int>(told.code);
    } catch (const UsageError& error) {
        return fail(ExitCode::usage, error.what());
    } catch (const io::SceneError& error) {
        return fail(ExitCode::bad_input, error.what());
    } catch (const host::ControlError& error) {
        return fail(ExitCode::bad_input, error.what());
    } catch (const host::PluginError& error) {
        return fail(ExitCode::plugin, error.what());
    } catch (const io::WriteError& error) {
        return fail(ExitCode::cannot_write, error.what());
    } catch (const Interrupted& error) {
        return fail(static_cast<ExitCode>(static_cast<int>(ExitCode::signal) + error.signal), error.what());
    } catch (const std::bad_alloc&) {
        return fail(ExitCode::internal,
                    "not enough memory\nhint: use a smaller scene or composition, a lower --resolution or "
                    "fewer --threads");
    } catch (const std::system_error& error) {
        const bool short_of = error.code() == std::errc::resource_unavailable_try_again;
        return fail(ExitCode::internal,
                    std::string(short_of ? "no thread can be had: " : "internal error: ") + error.what() +
                        (short_of ? "\nhint: raise the limit of processes or of memory (ulimit)" : ""));
    } catch (const std::exception& error) {
        return fail(ExitCode::internal, std::string("internal error: ") + error.what());
    }
}

// What was printed may still be on its way.
int finish_output() {
    errno = 0;
    if (std::fflush(stdout) == 0 && !std::ferror(stdout)) return 0;
    return fail(ExitCode::cannot_write, std::string("cannot write to standard output") +
                                            (errno ? std::string(": ") + std::strerror(errno) : "") +
                                            "\nhint: free some space or write to another disk");
}

}  // namespace
}  // namespace zam::cli

int main(int argc, char** argv) {
    const int code = zam::cli::main(argc, argv);
    return code == 0 ? zam::cli::finish_output() : code;
}
