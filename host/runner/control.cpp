#include "host/runner/control.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <map>
#include <optional>

#include "host/text.h"

namespace zam::host {
namespace {

constexpr std::size_t kMostOffered = 30;  // of what there is instead

// `; did you mean "..."?` when there is a near one, else `; there are "...", "..."`.
std::string hint_from(const std::string& near, const std::vector<std::string>& all) {
    if (!near.empty()) return "; did you mean " + quote(near) + "?";
    if (all.empty()) return "; there are none";
    std::string list;
    for (std::size_t i = 0; i < std::min(all.size(), kMostOffered); ++i)
        list += (list.empty() ? "; there are " : ", ") + quote(all[i]);
    if (all.size() > kMostOffered) list += " and more";
    return list;
}

std::optional<int> whole_number(const std::string& text) {
    int number = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || stop != end) return std::nullopt;
    return number;
}

double slider_value(const Control& control, const ControlValue& value) {
    const double* number = std::get_if<double>(&value);
    if (!number || std::isnan(*number))
        throw ControlError("wants a number, for example " + format_number(control.default_value));
    if (*number < control.valid_min || *number > control.valid_max) {
        throw ControlError(format_number(*number) + " is outside its range; use " +
                           format_number(control.valid_min) + " to " + format_number(control.valid_max));
    }
    return *number;
}

double popup_value(const Control& control, const ControlValue& value) {
    if (const auto* text = std::get_if<std::string>(&value)) {
        for (std::size_t i = 0; i < control.choices.size(); ++i) {
            if (lower(control.choices[i]) == lower(*text)) return static_cast<double>(i + 1);
        }
        throw ControlError("has no choice " + quote(*text) +
                           hint_from(nearest(*text, control.choices), control.choices));
    }
    const double* number = std::get_if<double>(&value);
    const auto choices = static_cast<double>(control.choices.size());
    if (number && *number >= 1.0 && *number <= choices && *number == std::floor(*number)) return *number;
    throw ControlError("wants one of its choices" + hint_from("", control.choices) + ", or 1 to " +
                       format_number(choices));
}

double checkbox_value(const ControlValue& value) {
    if (const bool* on = std::get_if<bool>(&value)) return *on ? 1.0 : 0.0;
    const double* number = std::get_if<double>(&value);
    if (number && (*number == 0.0 || *number == 1.0)) return *number;
    throw ControlError("is a box; use true or false");
}

double layer_value(const ControlValue& value, const Composition& composition) {
    if (const double* number = std::get_if<double>(&value)) {
        if (*number == 0.0) return 0.0;
        if (*number == std::floor(*number) && std::abs(*number) <= INT32_MAX &&
            composition.find_layer(static_cast<LayerId>(*number))) {
            return *number;
        }
        throw ControlError("no layer has id " + format_number(*number) +
                           "; use a layer's name or id, 0 for none");
    }
    const auto* text = std::get_if<std::string>(&value);
    if (!text) throw ControlError("wants a layer; use its name or id, 0 for none");
    std::vector<std::string> names;
    const Layer* found = nullptr;
    for (const Layer& layer : composition.layers) {
        const Item* source = composition.find_item(layer.source);
        const std::string& name = layer.name.empty() && source ? source->name : layer.name;
        names.push_back(name);
        if (name != *text) continue;
        if (found) {
            throw ControlError("two layers are called " + quote(*text) + "; use an id: " +
                               std::to_string(found->id) + " or " + std::to_string(layer.id));
        }
        found = &layer;
    }
    if (found) return found->id;
    if (text->empty() || lower(*text) == "none") return 0.0;
    throw ControlError("no layer is called " + quote(*text) + hint_from(nearest(*text, names), names));
}

double plain_value(const Control& control, const ControlValue& value, const Composition& composition) {
    if (control.type == PF_Param_POPUP) return popup_value(control, value);
    if (control.type == PF_Param_CHECKBOX) return checkbox_value(value);
    if (control.type == PF_Param_LAYER) return layer_value(value, composition);
    return slider_value(control, value);
}

}  // namespace

std::string path_of(const Control& control) {
    return control.group.empty() ? control.name : control.group + "/" + control.name;
}

bool holds_value(PF_ParamType type) {
    return interpolates(type) || type == PF_Param_CHECKBOX || type == PF_Param_POPUP ||
           type == PF_Param_LAYER;
}

bool interpolates(PF_ParamType type) {
    return type == PF_Param_SLIDER || type == PF_Param_FIX_SLIDER || type == PF_Param_FLOAT_SLIDER ||
           type == PF_Param_ANGLE;
}

const Control& find_control(const std::vector<Control>& controls, const std::string& text) {
    std::map<std::string, std::string> proper;  // what to write, by whatever a user may have meant to
    std::vector<std::string> all;
    std::vector<const Control*> matches;
    for (const Control& control : controls) {
        if (!holds_value(control.type)) continue;
        const bool unique = std::count_if(controls.begin(), controls.end(), [&](const Control& other) {
                                return holds_value(other.type) && other.name == control.name;
                            }) == 1;
        const std::string path = path_of(control);
        all.push_back(unique ? control.name : path);
        proper.try_emplace(control.name, all.back());
        proper.try_emplace(path, all.back());
        if (!text.empty() && text[0] == '#' && whole_number(text.substr(1)) == control.id) return control;
        if (path == text || control.name == text) matches.push_back(&control);
    }
    if (matches.size() == 1) return *matches[0];
    if (matches.empty()) {
        if (!text.empty() && text[0] == '#') {
            throw ControlError("no control has the id " + quote(text) + "; ids are \"#\" and a whole number");
        }
        std::vector<std::string> words;
        for (const auto& [word, written] : proper) words.push_back(word);
        throw ControlError("no control is called " + quote(text) +
                           hint_from(proper[nearest(text, words)], all));
    }
    std::string places;
    for (const Control* match : matches) places += (places.empty() ? "" : " or ") + quote(path_of(*match));
    throw ControlError(std::to_string(matches.size()) + " controls are called " + quote(text) + "; use " +
                       places);
}

ResolvedSetting resolve_setting(const std::vector<Control>& controls, const ControlSetting& setting,
                                const Composition& composition) {
    std::string place = setting.where.empty() ? "" : setting.where + ": ";
    try {
        const Control& control = find_control(controls, setting.control);
        place += "control " + quote(setting.control) + ": ";
        if (setting.value.varies() && (control.flags & PF_ParamFlag_CANNOT_TIME_VARY)) {
            throw ControlError("cannot be animated; give it one value");
        }
        ResolvedSetting resolved;
        resolved.index = control.index;
        if (!setting.value.varies()) {
            resolved.value = plain_value(control, setting.value.constant, composition);
        }
        for (const auto& key : setting.value.keys) {
            resolved.value.keys.push_back(
                {key.frame, plain_value(control, key.value, composition),
                 interpolates(control.type) ? key.interpolation : Interpolation::hold, key.ease_in,
                 key.ease_out});
        }
        return resolved;
    } catch (const ControlError& error) {
        throw ControlError(place + error.what());
    }
}

}  // namespace zam::host
