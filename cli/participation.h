#pragma once
// Which lights add to a frame, and why the others do not: the effect's rules, told to people. The effect alone decides;
// a test holds this against frames.
#include <string>
#include <vector>

#include "host/runner/session.h"

namespace zam::cli {

class Participation {
  public:
    // Both must outlive the object; frames are composition frames.
    Participation(const host::Session& session, const host::Composition& composition, int frame);

    // Why the light adds nothing to the frame, wherever it stands; empty when it takes part.
    [[nodiscard]] std::vector<std::string> reasons_against(const host::Layer& light) const;

    // Composition frame at which the effect reads the scene.
    [[nodiscard]] double frame() const { return at_; }

  private:
    [[nodiscard]] double number(const std::string& control) const;
    [[nodiscard]] std::string choice(const std::string& control) const;
    [[nodiscard]] bool is_there(const host::Layer& light) const;
    [[nodiscard]] double own_size(const host::Layer& light, double size, const std::string& individual) const;
    [[nodiscard]] double axis_length(const host::Layer& light) const;
    void check_filters(const host::Layer& light, std::vector<std::string>& reasons) const;
    void check_point(const host::Layer& light, std::vector<std::string>& reasons) const;
    void check_spot(const host::Layer& light, std::vector<std::string>& reasons) const;

    const host::Session& session_;
    const host::Composition& composition_;
    const int frame_;
    double at_, now_;  // frame, seconds
};

}  // namespace zam::cli
