#include "cli/greying.h"

#include <algorithm>
#include <set>

namespace zam::cli {
namespace {

using host::Control;

std::vector<double> values_of(const Control& control) {
    if (control.type == PF_Param_CHECKBOX) return {0.0, 1.0};
    std::vector<double> values;
    if (control.type == PF_Param_POPUP)
        for (std::size_t i = 1; i <= control.choices.size(); ++i) values.push_back(static_cast<double>(i));
    return values;
}

std::set<int> greyed_now(host::Session& session) {
    const host::Outcome outcome = session.send(PF_Cmd_UPDATE_PARAMS_UI);
    if (!outcome.ok())
        throw host::PluginError("the plug-in could not update its controls: " + outcome.message);
    std::set<int> greyed;
    for (const Control& control : session.controls())
        if (session.is_disabled(control.index)) greyed.insert(control.index);
    return greyed;
}

// Those whose single change from the defaults greys or frees anything.
std::vector<const Control*> find_deciders(host::Session& session) {
    const std::set<int> at_defaults = greyed_now(session);
    std::vector<const Control*> deciders;
    for (const Control& control : session.controls()) {
        bool decides = false;
        for (const double value : values_of(control)) {
            session.set_control(control.index, value);
            decides |= greyed_now(session) != at_defaults;
        }
        if (decides) deciders.push_back(&control);
        if (!values_of(control).empty()) session.set_control(control.index, control.default_value);
    }
    return deciders;
}

struct Trial {
    std::vector<double> values;  // of the deciders
    std::set<int> greyed;
};

void try_all(host::Session& session, const std::vector<const Control*>& deciders, std::vector<double>& values,
             std::vector<Trial>& trials) {
    if (values.size() == deciders.size()) {
        trials.push_back({values, greyed_now(session)});
        return;
    }
    const Control& control = *deciders[values.size()];
    for (const double value : values_of(control)) {
        session.set_control(control.index, value);
        values.push_back(value);
        try_all(session, deciders, values, trials);
        values.pop_back();
    }
    session.set_control(control.index, control.default_value);
}

// The values of the decider at this place that grey the control whatever the others say.
std::vector<double> values_that_grey(const std::vector<Trial>& trials, const Control& decider,
                                     std::size_t place, int control) {
    std::vector<double> values;
    for (const double value : values_of(decider))
        if (std::all_of(trials.begin(), trials.end(), [&](const Trial& trial) {
                return trial.values[place] != value || trial.greyed.count(control) > 0;
            }))
            values.push_back(value);
    return values;
}

}  // namespace

std::map<int, std::vector<Greying>> find_greying(host::Session& session) {
    const std::vector<const Control*> deciders = find_deciders(session);
    std::vector<double> values;
    std::vector<Trial> trials;
    try_all(session, deciders, values, trials);

    std::map<int, std::vector<Greying>> all;
    for (const Control& control : session.controls()) {
        std::vector<Greying> reasons;
        std::set<const Trial*> explained;
        for (std::size_t place = 0; place < deciders.size(); ++place) {
            const Greying reason{deciders[place]->index,
                                 values_that_grey(trials, *deciders[place], place, control.index)};
            for (const double value : reason.values)
                for (const Trial& trial : trials)
                    if (trial.values[place] == value) explained.insert(&trial);
            if (!reason.values.empty()) reasons.push_back(reason);
        }
        for (const Trial& trial : trials)
            if (trial.greyed.count(control.index) != explained.count(&trial))
                throw host::PluginError("what greys \"" + control.name +
                                        "\" cannot be told control by control");
        if (!reasons.empty()) all[control.index] = std::move(reasons);
    }
    return all;
}

}  // namespace zam::cli
