#pragma once
// Seeded random scenes with numbers far outside of sense.
#include <functional>
#include <map>
#include <span>

#include "tests/contract/zam_fixture.h"

namespace zam::test {

// A scene, what the user sets, and what the host says beside the composition.
struct Shot {
    Composition comp;
    std::map<int, double> controls;  // by index
    LayerId wall = 0;                // of "Set Reach Layer"
    RenderSettings settings{.depth = Depth::bits16};
    std::function<void(PF_InData&)> amend;
    int shown_width = 0, shown_height = 0;  // what the composition says once the effect is on it

    Shot(int width, int height)
        : comp(make_composition(width, height)), shown_width(width), shown_height(height) {}
    void set(const char* name, double value) { controls[find_control(table(), name).index] = value; }
    void apply(Session& session) const {
        for (const auto& [index, value] : controls) session.set_control(index, value);
        if (!wall) return;
        EXPECT_TRUE(session.choose_layer(find_control(table(), "Set Reach Layer").index, wall, 0).ok());
    }
    // As the effect registered them.
    static const std::vector<Control>& table() {
        static const std::vector<Control> controls = Running(make_composition()).session.controls();
        return controls;
    }
};

// A kind of scenes, and how far row targets and the slow reference may be apart in them.
struct Kind {
    const char* name;
    double most_apart;  // share of channels that are more than one code apart on two row targets
    double most_wrong;  // share of those more than 1 % of full scale off the slow reference; kNotCompared
    std::function<Shot(unsigned seed)> make;
};
inline constexpr double kNotCompared = 2.0;
[[nodiscard]] std::span<const Kind> odd_kinds();

}  // namespace zam::test
