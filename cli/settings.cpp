#include "cli/settings.h"

#include <map>

#include "cli/exit_code.h"
#include "cli/messages.h"
#include "cli/parse_setting.h"
#include "host/text.h"

namespace zam::cli {
namespace {

// The effect passes over such layers without a word.
void warn_of_useless_reach(const host::Composition& composition, const host::Layer& layer) {
    const bool own = layer.id == composition.effect.layer;
    const bool flat = !layer.three_d &&
                      (layer.kind == host::LayerKind::solid || layer.kind == host::LayerKind::null_object);
    if (!own && !flat) return;
    print_warning("control \"Set Reach Layer\": layer " + quote(layer.name) +
                  (own ? " carries the effect" : " is a 2D layer") +
                  ", so the cones end at \"Reach\"; choose another 3D layer");
}

// Layer controls that the plug-in supervises do their work only when a user picks a layer in them.
void pick_layers(host::Session& session, const host::Composition& composition,
                 const std::vector<host::ControlSetting>& settings, PluginAnswers& answers) {
    const std::vector<host::Control>& controls = session.controls();
    std::map<int, host::LayerId> picked;  // of several settings of one control the last counts
    for (const host::ControlSetting& setting : settings) {
        const host::Control& control = host::find_control(controls, setting.control);
        if (control.type != PF_Param_LAYER || !(control.flags & PF_ParamFlag_SUPERVISE)) continue;
        const host::ResolvedSetting resolved = host::resolve_setting(controls, setting, composition);
        picked[control.index] = static_cast<host::LayerId>(resolved.value.at(0.0));
    }
    for (const auto& [index, layer] : picked) {
        const host::Layer* chosen = composition.find_layer(layer);
        if (chosen && controls[static_cast<std::size_t>(index - 1)].name == "Set Reach Layer")
            warn_of_useless_reach(composition, *chosen);
        answers.check(session.choose_layer(index, layer, 0.0), "choosing layer " + std::to_string(layer));
    }
}

}  // namespace

GivenControls apply_settings(host::Session& session, const host::Composition& composition,
                             const std::vector<std::string>& given, PluginAnswers& answers) {
    session.apply_settings(composition.effect);
    host::EffectSettings own;
    own.layer = composition.effect.layer;
    for (const std::string& text : given) own.controls.push_back(parse_setting(text, session.controls()));
    GivenControls resolved;
    try {
        if (!own.controls.empty()) session.apply_settings(own);
        for (const host::ControlSetting& setting : own.controls) {
            host::ResolvedSetting value = host::resolve_setting(session.controls(), setting, composition);
            resolved.emplace_back(value.index, std::move(value.value));
        }
    } catch (const host::ControlError& error) {
        throw UsageError(error.what());
    }
    std::vector<host::ControlSetting> all = composition.effect.controls;
    all.insert(all.end(), own.controls.begin(), own.controls.end());
    pick_layers(session, composition, all, answers);
    return resolved;
}

}  // namespace zam::cli
