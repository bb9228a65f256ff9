#include "host/runner/control.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <optional>

#include "host/composition/printable.h"

namespace zam::host {
namespace {

constexpr std::size_t kLongestWord = 64;  // longer words are not compared: the cost is quadratic
constexpr std::size_t kMostOffered = 30;  // of what there is instead

// Edits (insert, delete, replace one character) that turn one text into the other.
std::size_t edit_distance(const std::string& a, const std::string& b) {
    std::vector<std::size_t> row(b.size() + 1);
    for (std::size_t j = 0; j <= b.size(); ++j) row[j] = j;
    for (std::size_t i = 1; i <= a.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t above = row[j];
            row[j] = std::min({above + 1, row[j - 1] + 1, diagonal + (a[i - 1] == b[j - 1] ? 0 : 1)});
            diagonal = above;
        }
    }
    return row[b.size()];
}

std::string folded(std::string text) {
    for (char& c : text) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    return text;
}

struct Candidate {
    std::string text;   // that a user may have meant
    std::string shown;  // and what to write for it
};

std::vector<Candidate> candidates(const std::vector<std::string>& texts) {
    std::vector<Candidate> all;
    for (const std::string& text : texts) all.push_back({text, text});
    return all;
}

// `; did you mean "..."?` for a near miss, else `; there are "...", "..."`.
std::string hint_from(const std::string& text, const std::vector<Candidate>& known) {
    std::string best;
    std::vector<std::string> all;
    std::size_t nearest = std::max<std::size_t>(2, text.size() / 3) + 1;
    for (const Candidate& candidate : known) {
        const bool comparable = text.size() <= kLongestWord && candidate.text.size() <= kLongestWord;
        const std::size_t distance =
            comparable ? edit_distance(folded(text), folded(candidate.text)) : nearest;
        if (distance < nearest) {
            nearest = distance;
            best = candidate.shown;
        }
        if (all.size() > kMostOffered) continue;
        if (std::find(all.begin(), all.end(), candidate.shown) == all.end()) all.push_back(candidate.shown);
    }
    if (!best.empty()) return "; did you mean " + quote(best) + "?";
    if (all.empty()) return "; there are none";
    std::string list;
    for (std::size_t i = 0; i < std::min(all.size(), kMostOffered); ++i)
        list += (list.empty() ? "; there are " : ", ") + quote(all[i]);
    if (all.size() > kMostOffered) list += " and more";
    return list;
}

std::string path_of(const Control& control) {
    return control.group.empty() ? control.name : control.group + "/" + control.name;
}

std::optional<int> whole_number(const std::string& text) {
    int number = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || stop != end) return std::nullopt;
    return number;
}

std::string shown(double number) {
    char text[40];
    std::snprintf(text, sizeof text, "%.10g", number);
    return text;
}

double slider_value(const Control& control, const ControlValue& value) {
    const double* number = std::get_if<double>(&value);
    if (!number || std::isnan(*number))
        throw ControlError("wants a number, for example " + shown(control.default_value));
    if (*number < control.valid_min || *number > control.valid_max) {
        throw ControlError(shown(*number) + " is outside its range; use " + shown(control.valid_min) +
                           " to " + shown(control.valid_max));
    }
    return *number;
}

double popup_value(const Control& control, const ControlValue& value) {
    if (const auto* text = std::get_if<std::string>(&value)) {
        for (std::size_t i = 0; i < control.choices.size(); ++i) {
            if (folded(control.choices[i]) == folded(*text)) return static_cast<double>(i + 1);
        }
        throw ControlError("has no choice " + quote(*text) + hint_from(*text, candidates(control.choices)));
    }
    const double* number = std::get_if<double>(&value);
    const auto choices = static_cast<double>(control.choices.size());
    if (number && *number >= 1.0 && *number <= choices && *number == std::floor(*number)) return *number;
    throw ControlError("wants one of its choices" + hint_from("", candidates(control.choices)) +
                       ", or 1 to " + shown(choices));
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
        throw ControlError("no layer has id " + shown(*number) + "; use a layer's name or id, 0 for none");
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
    if (text->empty() || folded(*text) == "none") return 0.0;
    throw ControlError("no layer is called " + quote(*text) + hint_from(*text, candidates(names)));
}

double plain_value(const Control& control, const ControlValue& value, const Composition& composition) {
    if (control.type == PF_Param_POPUP) return popup_value(control, value);
    if (control.type == PF_Param_CHECKBOX) return checkbox_value(value);
    if (control.type == PF_Param_LAYER) return layer_value(value, composition);
    return slider_value(control, value);
}

}  // namespace

bool holds_value(PF_ParamType type) {
    return interpolates(type) || type == PF_Param_CHECKBOX || type == PF_Param_POPUP ||
           type == PF_Param_LAYER;
}

bool interpolates(PF_ParamType type) {
    return type == PF_Param_SLIDER || type == PF_Param_FIX_SLIDER || type == PF_Param_FLOAT_SLIDER ||
           type == PF_Param_ANGLE;
}

const Control& find_control(const std::vector<Control>& controls, const std::string& text) {
    std::vector<Candidate> known;
    std::vector<const Control*> matches;
    for (const Control& control : controls) {
        if (!holds_value(control.type)) continue;
        const bool unique = std::count_if(controls.begin(), controls.end(), [&](const Control& other) {
                                return holds_value(other.type) && other.name == control.name;
                            }) == 1;
        const std::string path = path_of(control), shown = unique ? control.name : path;
        known.push_back({control.name, shown});
        known.push_back({path, shown});
        if (!text.empty() && text[0] == '#' && whole_number(text.substr(1)) == control.id) return control;
        if (path == text || control.name == text) matches.push_back(&control);
    }
    if (matches.size() == 1) return *matches[0];
    if (matches.empty()) {
        if (!text.empty() && text[0] == '#') {
            throw ControlError("no control has the id " + quote(text) + "; ids are \"#\" and a whole number");
        }
        throw ControlError("no control is called " + quote(text) + hint_from(text, known));
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
