#include "cli/version.h"

#include "cli/plugin_answers.h"
#include "host/runner/session.h"
#include "io/effect_layer.h"

namespace zam::cli {

std::string program_version() { return ZAM_VERSION; }

std::string version_text() {
    std::string text = "zam " + program_version();
    try {
        host::Composition composition;
        io::add_effect_layer(composition);
        const host::Plugin plugin(plugin_file(""));
        host::Session session(plugin, composition, {});
        session.start();
        std::string about = session.send(PF_Cmd_ABOUT).message;
        for (char& c : about) c = c == '\r' ? '\n' : c;  // how the host's message box ends its lines
        text += "\n" + about;
    } catch (const host::PluginError&) {
        // The program has its version without a plug-in, too.
    }
    return text;
}

}  // namespace zam::cli
