#pragma once
// The controls that a plug-in registers, their values over time, and the array of definitions that a command
// receives.
#include <string>
#include <utility>
#include <vector>

#include "host/runner/control.h"
#include "host/watch/ledger.h"

namespace zam::host {

class ParamsStore {
  public:
    // Copies the definition and its strings. Throws Misuse for what cannot be added; oddities that a host
    // survives (no terminator, a default outside the range ...) are reported only.
    void add(PF_ParamIndex index, const PF_ParamDef* definition, Ledger& ledger);
    [[nodiscard]] const std::vector<Control>& controls() const { return controls_; }
    [[nodiscard]] int count() const { return static_cast<int>(controls_.size()); }

    // Index 1 is the first registered control. All throw ControlError for an index that holds no value.
    void set(int index, Animated<double> value);
    [[nodiscard]] Animated<double>& value(int index);
    // Choices of a popup do not blend, nor do boxes and layers: what a control shows at a frame.
    [[nodiscard]] double at(int index, double frame) const;

    // What PF_UpdateParamUI may change: never the value.
    void take_ui(int index, const PF_ParamDef& definition);
    // The controls so updated since this was last asked, in order.
    std::vector<int> take_ui_updates() { return std::exchange(ui_updates_, {}); }

    // The array for one command, null at its end; it lives until the next call. params[0] is `input`.
    PF_ParamDef** present(double frame, const PF_EffectWorld& input);
    // The effect's own view of params[0] in the array; null before there was one.
    [[nodiscard]] PF_EffectWorld* shown_input() { return shown_.empty() ? nullptr : &shown_[0].u.ld; }
    // Controls marked as changed by the command. Their values are taken over, but for layers.
    std::vector<int> take_changes();

  private:
    struct Held {
        std::string text;  // popup choices, or the label of a box or button
        Animated<double> value;
    };
    std::vector<Control> controls_;
    std::vector<Held> held_;
    std::vector<PF_ParamDef> shown_;
    std::vector<PF_ParamDef*> array_;
    std::vector<int> ui_updates_;
};

}  // namespace zam::host
