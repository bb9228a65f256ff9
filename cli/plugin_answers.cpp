#include "cli/plugin_answers.h"

#include <CLI/CLI.hpp>
#include <vector>

#include "cli/messages.h"
#include "cli/platform.h"
#include "host/runner/platform.h"
#include "host/utf8_path.h"

namespace zam::cli {

void add_plugin_option(CLI::App& command, std::string& file) {
    command
        .add_option("--plugin", file,
                    "Plug-in [" + std::string(platform::kPluginName) + " beside this program]")
        ->option_text("FILE");
}

std::string plugin_file(const std::string& given) {
    if (!given.empty()) return given;
    return (host::utf8_path(host::platform::this_program()).parent_path() / platform::kPluginName).string();
}

void PluginAnswers::check(const host::Outcome& outcome, const std::string& command) {
    const std::string said = outcome.message.empty() ? "" : ": " + outcome.message;
    if (outcome.thrown)
        throw host::PluginError(command + ": the plug-in threw " + std::to_string(*outcome.thrown) + said);
    if (outcome.error != 0)
        throw host::PluginError(command + ": the plug-in returned error " + std::to_string(outcome.error) +
                                said);
    if (outcome.message_is_error) throw host::PluginError(command + said);
    std::vector<std::string> warnings = outcome.reports;
    if (!outcome.message.empty()) warnings.push_back("the plug-in says" + said);
    for (const std::string& warning : warnings)
        if (told_.insert(warning).second) print_warning(command + ": " + warning);
}

}  // namespace zam::cli
