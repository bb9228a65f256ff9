#include "host/runner/control.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/unit/message_of.h"

namespace zam::host {
namespace {

using ::testing::HasSubstr;

Control control(int index, PF_ParamType type, const char* group, const char* name) {
    Control made;
    made.index = index;
    made.id = index + 100;
    made.type = type;
    made.group = group;
    made.name = name;
    return made;
}

std::vector<Control> panel() {
    std::vector<Control> all = {
        control(1, PF_Param_GROUP_START, "", "Point Lights"),
        control(2, PF_Param_FIX_SLIDER, "Point Lights", "Intensity"),
        control(3, PF_Param_GROUP_START, "", "Spot Lights"),
        control(4, PF_Param_FIX_SLIDER, "Spot Lights", "Intensity"),
        control(5, PF_Param_POPUP, "", "Look"),
        control(6, PF_Param_CHECKBOX, "", "Active"),
        control(7, PF_Param_LAYER, "", "Set Reach Layer"),
    };
    for (const std::size_t slider : {1U, 3U}) {
        all[slider].valid_max = 1000;
        all[slider].default_value = 100;
    }
    all[4].choices = {"Weak", "Linear", "Natural"};
    all[5].flags = PF_ParamFlag_CANNOT_TIME_VARY;
    return all;
}

Composition stage() {
    Composition composition;
    const std::pair<LayerId, const char*> layers[] = {{3, "Wall"}, {4, "Floor"}, {5, "Floor"}, {6, ""}};
    for (const auto& [id, name] : layers) {
        Layer layer;
        layer.id = id;
        layer.name = name;
        composition.layers.push_back(layer);
    }
    composition.items = {{9, "White Solid", 100, 100}};
    composition.layers[3].source = 9;
    return composition;
}

ControlSetting setting(const char* control, ControlValue value) {
    return {control, Animated<ControlValue>(value), ""};
}

TEST(Control, FoundByNameByGroupAndNameAndById) {
    const auto all = panel();
    EXPECT_EQ(find_control(all, "Look").index, 5);
    EXPECT_EQ(find_control(all, "Spot Lights/Intensity").index, 4);
    EXPECT_EQ(find_control(all, "#102").index, 2);
}

TEST(Control, NotFoundSaysWhatThereIs) {
    const std::pair<const char*, const char*> cases[] = {
        {"Lok", "no control is called \"Lok\"; did you mean \"Look\"?"},
        {"look", "did you mean \"Look\"?"},
        {"intensty", "did you mean \"Point Lights/Intensity\"?"},
        {"spot lights/intensty", "did you mean \"Spot Lights/Intensity\"?"},
        {"Intensity",
         "2 controls are called \"Intensity\"; use \"Point Lights/Intensity\" or \"Spot Lights/Intensity\""},
        {"Point Lights",
         "no control is called \"Point Lights\"; there are \"Point Lights/Intensity\", \"Spot "
         "Lights/Intensity\", \"Look\""},
        {"#99", "no control has the id \"#99\""},
        {"", "no control is called \"\""},
    };
    for (const auto& [text, message] : cases) {
        const char* name = text;
        EXPECT_THAT(message_of<ControlError>([&] { return find_control(panel(), name); }),
                    HasSubstr(message));
    }
}

TEST(Control, ValuesBecomeNumbers) {
    const std::pair<ControlSetting, double> cases[] = {
        {setting("Spot Lights/Intensity", 12.5), 12.5},
        {setting("Look", "natural"), 3},
        {setting("Look", 2.0), 2},
        {setting("Active", true), 1},
        {setting("Active", 0.0), 0},
        {setting("Set Reach Layer", "Wall"), 3},
        {setting("Set Reach Layer", "White Solid"), 6},  // unnamed: goes by its source
        {setting("Set Reach Layer", 5.0), 5},
        {setting("Set Reach Layer", "none"), 0},
    };
    for (const auto& [given, expected] : cases) {
        EXPECT_EQ(resolve_setting(panel(), given, stage()).value.constant, expected) << given.control;
    }
}

TEST(Control, ValuesThatDoNotFitAreRefusedWithTheWayOut) {
    ControlSetting animated = setting("Active", true);
    animated.value.keys = {{0, true}, {1, false}};
    const std::pair<ControlSetting, const char*> cases[] = {
        {setting("Spot Lights/Intensity", 1000.5), "1000.5 is outside its range; use 0 to 1000"},
        {setting("Spot Lights/Intensity", std::nan("")), "wants a number, for example 100"},
        {setting("Spot Lights/Intensity", "much"), "wants a number"},
        {setting("Look", "Linaer"), "has no choice \"Linaer\"; did you mean \"Linear\"?"},
        {setting("Look", 4.0), "wants one of its choices"},
        {setting("Look", 1.5), "wants one of its choices"},
        {setting("Active", 2.0), "is a box; use true or false"},
        {setting("Set Reach Layer", "Floor"), "two layers are called \"Floor\"; use an id: 4 or 5"},
        {setting("Set Reach Layer", "Well"), "no layer is called \"Well\"; did you mean \"Wall\"?"},
        {setting("Set Reach Layer", 77.0), "no layer has id 77"},
        {animated, "cannot be animated"},
    };
    for (auto [given, message] : cases) {
        given.where = "stage.json:3:7";
        const ControlSetting& wrong = given;
        const std::string said =
            message_of<ControlError>([&] { return resolve_setting(panel(), wrong, stage()); });
        EXPECT_THAT(said, HasSubstr(message)) << wrong.control;
        EXPECT_THAT(said, HasSubstr("stage.json:3:7: control \"" + wrong.control + "\": "));
    }
}

TEST(Control, OnlyNumbersBlendFromKeyToKey) {
    ControlSetting slider = setting("Point Lights/Intensity", 0.0), popup = setting("Look", 1.0);
    slider.value.keys = {{0, 0.0}, {10, 100.0}};
    popup.value.keys = {{0, "Weak"}, {10, 3.0}};
    EXPECT_EQ(resolve_setting(panel(), slider, stage()).value.at(5), 50.0);
    EXPECT_EQ(resolve_setting(panel(), popup, stage()).value.at(9.9), 1.0);
    EXPECT_EQ(resolve_setting(panel(), popup, stage()).value.at(10), 3.0);
}

}  // namespace
}  // namespace zam::host
