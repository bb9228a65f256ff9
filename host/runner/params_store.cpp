#include "host/runner/params_store.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace zam::host {
namespace {

constexpr double kFixedOne = 65536.0;
constexpr std::size_t kMostControls = 1000, kLongestText = 65536;

double from_fixed(PF_Fixed fixed) { return fixed / kFixedOne; }

std::int32_t to_int32(double value) {
    if (!(value > -2147483648.0)) return INT32_MIN;
    return value >= 2147483647.0 ? INT32_MAX : static_cast<std::int32_t>(std::llround(value));
}

std::vector<std::string> split(const std::string& joined) {
    std::vector<std::string> parts{""};
    for (const char c : joined) {
        if (c == '|') {
            parts.emplace_back();
        } else {
            parts.back() += c;
        }
    }
    return parts;
}

void read_range(Control& control, double minimum, double maximum, double low, double high, double value) {
    control.valid_min = minimum;
    control.valid_max = maximum;
    control.slider_min = low;
    control.slider_max = high;
    control.default_value = value;
}

// Fills the fields that depend on the type. Throws Misuse for types that are not known.
void read_union(Control& control, const PF_ParamDef& from, std::string& text) {
    const auto& u = from.u;
    const auto take_text = [&](const char* given) {
        text = given ? std::string(given, strnlen(given, kLongestText)) : "";
    };
    switch (from.param_type) {
        case PF_Param_LAYER:
            control.default_value = u.ld.dephault;
            break;
        case PF_Param_SLIDER:
            read_range(control, u.sd.valid_min, u.sd.valid_max, u.sd.slider_min, u.sd.slider_max,
                       u.sd.dephault);
            break;
        case PF_Param_FIX_SLIDER:
            read_range(control, from_fixed(u.fd.valid_min), from_fixed(u.fd.valid_max),
                       from_fixed(u.fd.slider_min), from_fixed(u.fd.slider_max), from_fixed(u.fd.dephault));
            control.precision = u.fd.precision;
            break;
        case PF_Param_FLOAT_SLIDER:
            read_range(control, u.fs_d.valid_min, u.fs_d.valid_max, u.fs_d.slider_min, u.fs_d.slider_max,
                       u.fs_d.dephault);
            control.precision = u.fs_d.precision;
            break;
        case PF_Param_ANGLE:
            read_range(control, -30000, 30000, 0, 360, from_fixed(u.ad.dephault));
            break;
        case PF_Param_CHECKBOX:
            take_text(u.bd.u.nameptr);
            control.label = text;
            read_range(control, 0, 1, 0, 1, u.bd.dephault ? 1 : 0);
            break;
        case PF_Param_POPUP:
            take_text(u.pd.u.namesptr);
            control.choices = split(text);
            read_range(control, 1, u.pd.num_choices, 1, u.pd.num_choices, u.pd.dephault);
            break;
        case PF_Param_BUTTON:
            take_text(u.button_d.u.namesptr);
            break;
        case PF_Param_COLOR:
        case PF_Param_POINT:
        case PF_Param_POINT_3D:
        case PF_Param_NO_DATA:
        case PF_Param_GROUP_START:
        case PF_Param_GROUP_END:
            break;
        default:
            throw Misuse{"control type " + std::to_string(from.param_type), PF_Err_UNRECOGNIZED_PARAM_TYPE};
    }
}

void forget_strings(PF_ParamDef& definition) {
    if (definition.param_type == PF_Param_CHECKBOX) definition.u.bd.u.nameptr = nullptr;
    if (definition.param_type == PF_Param_POPUP) definition.u.pd.u.namesptr = nullptr;
    if (definition.param_type == PF_Param_BUTTON) definition.u.button_d.u.namesptr = nullptr;
}

std::string name_of(const PF_ParamDef& definition) {
    return std::string(definition.name, strnlen(definition.name, sizeof definition.name - 1));
}

void report_oddities(const Control& control, const PF_ParamDef& definition,
                     const std::vector<Control>& others, Ledger& ledger) {
    const std::string who =
        "control " + std::to_string(control.index) + " \"" + control.name + "\" in add_param: ";
    if (strnlen(definition.name, sizeof definition.name) == sizeof definition.name) {
        ledger.report(who + "name without a terminator");
    }
    // 0 is no id: such a control is known by its place.
    if (control.id != 0 &&
        std::any_of(others.begin(), others.end(), [&](const Control& c) { return c.id == control.id; })) {
        ledger.report(who + "persistent id " + std::to_string(control.id) + " is used twice");
    }
    if (control.type == PF_Param_POPUP &&
        definition.u.pd.num_choices != static_cast<int>(control.choices.size())) {
        ledger.report(who + std::to_string(definition.u.pd.num_choices) + " choices announced, " +
                      std::to_string(control.choices.size()) + " named");
    }
    if (holds_value(control.type) && control.type != PF_Param_LAYER &&
        !(control.valid_min <= control.default_value && control.default_value <= control.valid_max)) {
        ledger.report(who + "default outside the valid range");
    }
}

}  // namespace

void ParamsStore::add(PF_ParamIndex index, const PF_ParamDef* definition, Ledger& ledger) {
    if (!definition) throw Misuse{"null definition", PF_Err_BAD_CALLBACK_PARAM};
    if (index != -1 && index != count() + 1)
        throw Misuse{"index that is not the next one", PF_Err_INVALID_INDEX};
    if (controls_.size() >= kMostControls) throw Misuse{"too many controls", PF_Err_OUT_OF_MEMORY};

    Control control;
    Held held;
    control.index = count() + 1;
    control.id = definition->uu.id;
    control.type = definition->param_type;
    control.name = name_of(*definition);
    control.flags = definition->flags;
    control.ui_flags = definition->ui_flags;
    read_union(control, *definition, held.text);
    control.definition = *definition;
    forget_strings(control.definition);
    control.definition.name[sizeof control.definition.name - 1] = '\0';

    std::vector<std::string> open;
    for (const Control& before : controls_) {
        if (before.type == PF_Param_GROUP_START) open.push_back(before.name);
        if (before.type == PF_Param_GROUP_END && !open.empty()) open.pop_back();
    }
    if (!open.empty() && control.type != PF_Param_GROUP_END) control.group = open.back();

    report_oddities(control, *definition, controls_, ledger);
    // A layer control's default tells "none" or "own layer"; its value is a layer's id, at first none.
    held.value = control.type == PF_Param_LAYER ? 0.0 : control.default_value;
    controls_.push_back(std::move(control));
    held_.push_back(std::move(held));
}

Animated<double>& ParamsStore::value(int index) {
    if (index < 1 || index > count()) {
        throw ControlError("no control has index " + std::to_string(index) + "; there are " +
                           std::to_string(count()));
    }
    const auto place = static_cast<std::size_t>(index - 1);
    if (!holds_value(controls_[place].type)) {
        throw ControlError("control " + std::to_string(index) + " \"" + controls_[place].name +
                           "\" has no value to set");
    }
    return held_[place].value;
}

void ParamsStore::set(int index, Animated<double> new_value) {
    Animated<double>& held = value(index);
    if (!interpolates(controls_[static_cast<std::size_t>(index - 1)].type)) {
        for (auto& key : new_value.keys) key.interpolation = Interpolation::hold;
    }
    held = std::move(new_value);
}

double ParamsStore::at(int index, double frame) const {
    const auto place = static_cast<std::size_t>(index - 1);
    const Control& control = controls_[place];
    const double value = held_[place].value.at(frame);
    if (control.type == PF_Param_LAYER) return value;
    // Written so that no value is outside, whatever the plug-in gave as its range.
    return std::max(control.valid_min, std::min(value, control.valid_max));
}

void ParamsStore::take_ui(int index, const PF_ParamDef& definition) {
    ui_updates_.push_back(index);
    Control& control = controls_[static_cast<std::size_t>(index - 1)];
    control.ui_flags = definition.ui_flags;
    control.flags = definition.flags;
    control.name = name_of(definition);
    control.definition.ui_flags = definition.ui_flags;
    control.definition.flags = definition.flags;
    control.definition.ui_width = definition.ui_width;
    control.definition.ui_height = definition.ui_height;
    std::memcpy(control.definition.name, definition.name, sizeof definition.name - 1);
}

PF_ParamDef** ParamsStore::present(double frame, const PF_EffectWorld& input) {
    shown_.assign(controls_.size() + 1, PF_ParamDef{});
    shown_[0].param_type = PF_Param_LAYER;
    shown_[0].u.ld = input;
    for (std::size_t i = 0; i < controls_.size(); ++i) {
        PF_ParamDef& shown = shown_[i + 1];
        shown = controls_[i].definition;
        shown.uu.change_flags = PF_ChangeFlag_NONE;
        const char* text = held_[i].text.c_str();
        const double value = holds_value(shown.param_type) ? at(static_cast<int>(i + 1), frame) : 0.0;
        switch (shown.param_type) {
            case PF_Param_SLIDER:
                shown.u.sd.value = to_int32(value);
                break;
            case PF_Param_FIX_SLIDER:
                shown.u.fd.value = to_int32(value * kFixedOne);
                break;
            case PF_Param_ANGLE:
                shown.u.ad.value = to_int32(value * kFixedOne);
                break;
            case PF_Param_FLOAT_SLIDER:
                shown.u.fs_d.value = value;
                break;
            case PF_Param_CHECKBOX:
                shown.u.bd.value = value != 0.0;
                shown.u.bd.u.nameptr = text;
                break;
            case PF_Param_POPUP:
                shown.u.pd.value = to_int32(value);
                shown.u.pd.u.namesptr = text;
                break;
            case PF_Param_BUTTON:
                shown.u.button_d.u.namesptr = text;
                break;
            case PF_Param_LAYER: {  // without pixels: those want a checkout
                const A_long own = shown.u.ld.dephault;
                shown.u.ld = PF_LayerDef{};
                shown.u.ld.dephault = own;
                break;
            }
            default:
                break;
        }
    }
    array_.clear();
    for (PF_ParamDef& shown : shown_) array_.push_back(&shown);
    array_.push_back(nullptr);
    return array_.data();
}

std::vector<int> ParamsStore::take_changes() {
    std::vector<int> changed;
    for (std::size_t i = 0; i < controls_.size() && i + 1 < shown_.size(); ++i) {
        const PF_ParamDef& shown = shown_[i + 1];
        if (!(shown.uu.change_flags & PF_ChangeFlag_CHANGED_VALUE)) continue;
        changed.push_back(static_cast<int>(i + 1));
        Animated<double>& value = held_[i].value;
        if (value.varies()) continue;
        switch (controls_[i].type) {
            case PF_Param_SLIDER:
                value = shown.u.sd.value;
                break;
            case PF_Param_FIX_SLIDER:
                value = from_fixed(shown.u.fd.value);
                break;
            case PF_Param_ANGLE:
                value = from_fixed(shown.u.ad.value);
                break;
            case PF_Param_FLOAT_SLIDER:
                value = shown.u.fs_d.value;
                break;
            case PF_Param_CHECKBOX:
                value = shown.u.bd.value != 0;
                break;
            case PF_Param_POPUP:
                value = shown.u.pd.value;
                break;
            default:
                break;
        }
    }
    return changed;
}

}  // namespace zam::host
