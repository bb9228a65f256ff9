#include "tests/fuzz/effect_controls.h"

#include <cmath>

#include "cli/messages.h"
#include "host/runner/session.h"
#include "io/effect_layer.h"
#include "tests/fuzz/target.h"

namespace zam::fuzz {

const std::vector<host::Control>& effect_controls() {
    static const host::Plugin plugin(ZAM_PLUGIN_FILE);  // stays: libFuzzer keeps pointers to its counters
    static const std::vector<host::Control> controls = [] {
        host::Composition composition;
        io::add_effect_layer(composition);
        host::Session session(plugin, composition, {});
        session.start();
        return session.controls();
    }();
    return controls;
}

namespace {

// Before the first input, so that the effect's edges are not among those that inputs reach.
[[maybe_unused]] const auto& loaded = effect_controls();

}  // namespace

void require_resolves(const host::ControlSetting& setting, const host::Composition& composition) {
    try {
        const host::ResolvedSetting resolved = host::resolve_setting(effect_controls(), setting, composition);
        require(resolved.index >= 1 && resolved.index < 28, "index of a control");
        require(std::isfinite(resolved.value.at(0.0)), "value of a control");
        for (const auto& key : resolved.value.keys) require(std::isfinite(key.value), "key of a control");
    } catch (const host::ControlError& error) {
        // Its hint stands behind a semicolon.
        for (const std::string& line : cli::message_lines(error.what())) require_clear_line(line);
    }
}

}  // namespace zam::fuzz
