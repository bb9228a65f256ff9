#pragma once
// Which lights add to a frame, and why the others do not: the effect's rules, told to people. The effect alone decides;
// a test holds this against frames.
#include <cstddef>
#include <map>
#include <string>
#include <unordered_map>
#include <vector>

#include "host/composition/matrix.h"
#include "host/runner/session.h"

namespace zam::cli {

class Participation {
  public:
    // Both must outlive the object, and keep their layers and controls; frames are composition frames.
    Participation(const host::Session& session, const host::Composition& composition, int frame);

    // Why the light adds nothing to the frame, whether or not it is in the picture; empty when it takes part.
    // `world` is the light's.
    [[nodiscard]] std::vector<std::string> reasons_against(const host::Layer& light,
                                                           const host::Matrix& world) const;
    [[nodiscard]] std::vector<std::string> reasons_against(const host::Layer& light) const {
        return reasons_against(light, world(light));
    }
    // From the layer's own space; not finite where scales of parents multiply beyond all numbers.
    [[nodiscard]] host::Matrix world(const host::Layer& layer) const;
    // The camera that is looked through; null for the default view.
    [[nodiscard]] const host::Layer* camera() const { return camera_; }

    // Composition frame at which the effect reads the scene.
    [[nodiscard]] double frame() const { return at_; }

  private:
    struct Setting {
        double number;
        std::string choice;  // of popups
    };
    [[nodiscard]] const Setting& setting(const std::string& control) const;
    [[nodiscard]] double number(const std::string& control) const { return setting(control).number; }
    [[nodiscard]] const std::string& choice(const std::string& control) const {
        return setting(control).choice;
    }
    [[nodiscard]] bool is_there(const host::Layer& light) const;
    [[nodiscard]] double own_size(const host::Layer& light, double size, const std::string& individual) const;
    [[nodiscard]] bool is_in_bounds(const host::Layer& light, const host::Matrix& world,
                                    std::vector<std::string>& reasons) const;
    void check_filters(const host::Layer& light, std::vector<std::string>& reasons) const;
    void check_point(const host::Layer& light, std::vector<std::string>& reasons) const;
    void check_spot(const host::Layer& light, const host::Matrix& world,
                    std::vector<std::string>& reasons) const;

    const host::Session& session_;
    const host::Composition& composition_;
    const int frame_;
    double at_, now_;  // frame, seconds
    const host::Layer* camera_;
    host::Matrix camera_from_world_;
    bool some_solo_;
    std::unordered_map<host::LayerId, std::size_t> places_;  // of the layers in the stack
    mutable std::map<std::string, Setting> settings_;        // those asked for so far
};

}  // namespace zam::cli
