#include "cli/controls.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <vector>

#include "cli/greying.h"
#include "cli/output.h"
#include "cli/plugin_answers.h"
#include "host/runner/session.h"
#include "host/text.h"
#include "io/effect_layer.h"

namespace zam::cli {
namespace {

using host::Control;

struct Options {
    std::string plugin;
    bool json = false;
};

const char* kind_of(const Control& control) {
    switch (control.type) {
        case PF_Param_LAYER:
            return "layer";
        case PF_Param_SLIDER:
            return "slider";
        case PF_Param_FIX_SLIDER:
            return "fixed slider";
        case PF_Param_FLOAT_SLIDER:
            return "float slider";
        case PF_Param_ANGLE:
            return "angle";
        case PF_Param_CHECKBOX:
            return "check box";
        case PF_Param_COLOR:
            return "colour";
        case PF_Param_POINT:
            return "point";
        case PF_Param_POPUP:
            return "popup";
        case PF_Param_GROUP_START:
            return "group";
        case PF_Param_GROUP_END:
            return "group end";
        default:
            return "other";
    }
}

bool is_slider(const Control& control) {
    return control.type == PF_Param_SLIDER || control.type == PF_Param_FIX_SLIDER ||
           control.type == PF_Param_FLOAT_SLIDER;
}

// How a scene names it.
std::string values_of(const Control& control) {
    if (is_slider(control))
        return format_number(control.valid_min) + " to " + format_number(control.valid_max);
    std::string text;
    for (const std::string& choice : control.choices) text += (text.empty() ? "" : " | ") + choice;
    if (control.type == PF_Param_CHECKBOX) return "true or false";
    if (control.type == PF_Param_LAYER) return "a layer's name or id";
    return text;
}

std::string default_of(const Control& control) {
    if (control.type == PF_Param_CHECKBOX) return control.default_value != 0.0 ? "true" : "false";
    if (control.type == PF_Param_LAYER) return control.default_value < 0.0 ? "the layer itself" : "none";
    if (control.type != PF_Param_POPUP) return is_slider(control) ? format_number(control.default_value) : "";
    const auto choice = static_cast<std::size_t>(control.default_value);
    return choice >= 1 && choice <= control.choices.size() ? control.choices[choice - 1] : "";
}

std::string remarks_of(const Control& control) {
    std::string text;
    if (control.flags & PF_ParamFlag_CANNOT_TIME_VARY) text = "cannot be keyframed";
    if (control.flags & PF_ParamFlag_SUPERVISE) text += text.empty() ? "supervised" : ", supervised";
    return text;
}

void print_text(const std::vector<Control>& controls) {
    std::vector<std::vector<std::string>> rows = {
        {"index", "id", "control", "kind", "values", "default", "remarks"}};
    for (const Control& control : controls) {
        if (control.type == PF_Param_GROUP_END) continue;
        rows.push_back({std::to_string(control.index), "#" + std::to_string(control.id), path_of(control),
                        kind_of(control), values_of(control), default_of(control), remarks_of(control)});
    }
    print_table(rows);
}

// As the user interface shows them: texts of choices, true and false.
nlohmann::ordered_json shown_value(const Control& control, double value) {
    if (control.type == PF_Param_CHECKBOX) return value != 0.0;
    return control.choices.at(static_cast<std::size_t>(value) - 1);
}

nlohmann::ordered_json shown_greying(const std::vector<Control>& controls,
                                     const std::vector<Greying>& reasons) {
    nlohmann::ordered_json list = nlohmann::ordered_json::array();
    for (const Greying& reason : reasons) {
        const Control& control = controls[static_cast<std::size_t>(reason.control - 1)];
        nlohmann::ordered_json values = nlohmann::ordered_json::array();
        for (const double value : reason.values) values.push_back(shown_value(control, value));
        list.push_back({{"control", path_of(control)}, {"values", values}});
    }
    return list;
}

void print_controls_json(host::Session& session) {
    const std::vector<Control>& controls = session.controls();
    const std::map<int, std::vector<Greying>> greying = find_greying(session);
    nlohmann::ordered_json list = nlohmann::ordered_json::array();
    for (const Control& control : controls) {
        nlohmann::ordered_json entry = {{"index", control.index},      {"id", control.id},
                                        {"kind", kind_of(control)},    {"name", control.name},
                                        {"group", control.group},      {"flags", control.flags},
                                        {"ui_flags", control.ui_flags}};
        if (is_slider(control)) {
            entry["valid"] = {control.valid_min, control.valid_max};
            entry["slider"] = {control.slider_min, control.slider_max};
            entry["precision"] = control.precision;
        }
        if (!control.choices.empty()) entry["choices"] = control.choices;
        if (!control.label.empty()) entry["label"] = control.label;
        const bool has_value = control.type != PF_Param_GROUP_START && control.type != PF_Param_GROUP_END;
        if (has_value) entry["default"] = control.default_value;
        if (const auto reasons = greying.find(control.index); reasons != greying.end())
            entry["greyed_by"] = shown_greying(controls, reasons->second);
        list.push_back(std::move(entry));
    }
    print_json(list);
}

void print_controls(const Options& options) {
    host::Composition composition;
    io::add_effect_layer(composition);
    const host::Plugin plugin(plugin_file(options.plugin));
    host::Session session(plugin, composition, {});
    session.start();
    if (options.json)
        print_controls_json(session);
    else
        print_text(session.controls());
    session.stop();
}

}  // namespace

Command add_controls(CLI::App& app) {
    const auto options = std::make_shared<Options>();
    CLI::App* parser = app.add_subcommand("controls", "List the plug-in's controls as it registers them");
    add_plugin_option(*parser, options->plugin);
    parser->add_flag("--json", options->json,
                     "For machines: everything that is registered, and what greys it");
    return {parser, [options] { print_controls(*options); }, "zam controls --json"};
}

}  // namespace zam::cli
