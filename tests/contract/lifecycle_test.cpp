// Commands, versions, data blocks and controls, as a host sees them.
#include "tests/contract/zam_fixture.h"

namespace zam::test {
namespace {

TEST(LifeCycle, AboutAndGlobalData) {
    Composition comp = make_composition();
    Session session(zam_plugin(), comp, {});
    EXPECT_EQ(session.send(PF_Cmd_GLOBAL_SETUP).error, 0);
    ASSERT_NE(session.out_data().global_data, nullptr);
    EXPECT_EQ(*static_cast<const A_long*>(*session.out_data().global_data), 1);
    EXPECT_EQ(session.out_data().my_version, 0x00088E00U);  // as the property resource says
    EXPECT_EQ(session.out_data().out_flags, 0x06000001);
    EXPECT_EQ(session.out_data().out_flags2, 6);
    const Outcome about = session.send(PF_Cmd_ABOUT);
    EXPECT_EQ(about.message.rfind("Zam, v1.1.1\r", 0), 0U) << about.message;
    EXPECT_TRUE(about.message.ends_with("Visualize 3D Lights"));
    EXPECT_FALSE(about.message_is_error);
    EXPECT_EQ(session.send(PF_Cmd_GLOBAL_SETDOWN).reports, std::vector<std::string>{});
    EXPECT_EQ(session.out_data().global_data, nullptr);
}

TEST(LifeCycle, UnknownCommandsDoNothing) {
    Running running(make_composition(), {.record_calls = true});
    for (const PF_Cmd command : {2, 7, 9, 10, 12, 15, 18, 28, 1000, -1}) {
        const Outcome outcome = running.session.send(command);
        EXPECT_TRUE(outcome.ok()) << command;
        EXPECT_TRUE(running.session.calls().empty()) << command;
        EXPECT_EQ(outcome.out_flags, 0) << command;
    }
}

TEST(LifeCycle, SequenceDataStartsEmptyAndIsKeptWhenRestored) {
    Running fresh(make_composition());
    EXPECT_EQ(fresh.session.sequence_bytes(), (std::vector<std::uint8_t>{0, 0, 0, 0}));

    Composition comp = make_composition();
    Session restored(zam_plugin(), comp, {});
    restored.restore_sequence({0x78, 0x56, 0x34, 0x12});
    restored.start();
    EXPECT_EQ(restored.sequence_bytes(), (std::vector<std::uint8_t>{0x78, 0x56, 0x34, 0x12}));
    restored.stop();
}

TEST(LifeCycle, WorksWithoutHandleCallbacksAndWithBlocksThatMove) {
    Composition comp = make_composition();
    add_point(comp, {32, 18, 0});
    const Frame expected = Running(comp).render();
    EXPECT_FALSE(is_black(expected));
    EXPECT_EQ(Running(comp, {.handle_callbacks = false}).render().argb, expected.argb);
    Running moving(comp, {.move_unlocked_handles = true, .record_calls = true});
    EXPECT_EQ(moving.render().argb, expected.argb);
    // The points' records and constants are unlocked before they are disposed of, the last one made first.
    const std::vector<std::string>& calls = moving.session.calls();
    const std::string unlock = "Utils.host_unlock_handle", dispose = "Utils.host_dispose_handle";
    ASSERT_GT(calls.size(), 4U);
    EXPECT_EQ(std::vector(calls.end() - 4, calls.end()),
              (std::vector<std::string>{unlock, dispose, unlock, dispose}));
    EXPECT_EQ(moving.session.sequence_bytes(), (std::vector<std::uint8_t>{0, 0, 0, 0}));
}

// One line of the control table; sliders give valid_max, slider_max and default, all from 0.
struct Row {
    const char* name;
    int type, id, flags;
    double valid_max, slider_max, start;
    const char* text;  // a popup's choices or a box's label
};

TEST(Controls, AreRegisteredAsTheTableSays) {
    constexpr int kGroup = PF_Param_GROUP_START, kEnd = PF_Param_GROUP_END, kPopup = PF_Param_POPUP,
                  kBox = PF_Param_CHECKBOX, kSlider = PF_Param_FIX_SLIDER, kLayer = PF_Param_LAYER;
    const char* individual = "None|Intensity (mult)|Shadow Darkness (mult)|Shadow Diffusion (add)";
    const Row rows[] = {
        {"Point Lights", kGroup, 1, 0x20, 0, 0, 0, ""},
        {"Point Light Model", kPopup, 2, 0, 0, 0, 2, "Off|Natural|Radius|Radius+Source|Source"},
        {"Light's Intensity", kBox, 3, 0, 0, 0, 1, "Use"},
        {"Intensity", kSlider, 4, 0x20, 1000, 500, 100, ""},
        {"Softness [%]", kSlider, 5, 0x20, 100, 100, 0, ""},
        {"Radius", kSlider, 6, 0x20, 10000, 1000, 100, ""},
        {"Individual Radius", kPopup, 7, 0, 0, 0, 1, individual},
        {"Source Intensity", kSlider, 8, 0x20, 1000, 500, 50, ""},
        {"Source Radius", kSlider, 9, 0x20, 1000, 100, 6, ""},
        {"", kEnd, 11, 0, 0, 0, 0, ""},
        {"Spot Lights", kGroup, 12, 0x20, 0, 0, 0, ""},
        {"Spot Light Model", kPopup, 13, 0, 0, 0, 2, "Off|Natural|Distance|Constant"},
        {"Light's Intensity", kBox, 14, 0, 0, 0, 1, "Use"},
        {"Intensity", kSlider, 15, 0x20, 1000, 500, 100, ""},
        {"Start Distance", kSlider, 16, 0x20, 10000, 1000, 10, ""},
        {"Reach", kSlider, 17, 0x20, 10000, 1000, 400, ""},
        {"Individual Reach", kPopup, 18, 0, 0, 0, 1, individual},
        {"Reach Comp Layer", kBox, 19, 0x02, 0, 0, 0, "Active"},
        {"Set Reach Layer", kLayer, 20, 0x40, 0, 0, 0, ""},
        {"Reach Both Sides", kBox, 28, 0, 0, 0, 1, "Active"},
        {"", kEnd, 21, 0, 0, 0, 0, ""},
        {"General", kGroup, 22, 0x20, 0, 0, 0, ""},
        {"Use Lights that are", kPopup, 23, 0, 0, 0, 1, "On|Off|On or Off"},
        {"Name starts with", kPopup, 29, 0, 0, 0, 1, "Anything|Zam|Front|Back"},
        {"Look", kPopup, 25, 0, 0, 0, 3, "Weak|Linear|Natural|Strong|Adjustable Linear|Adjustable Natural"},
        {"Gamma", kSlider, 27, 0x20, 100, 10, 1, ""},
        {"", kEnd, 26, 0, 0, 0, 0, ""},
    };
    Composition comp = make_composition();
    Session session(zam_plugin(), comp, {});
    session.send(PF_Cmd_GLOBAL_SETUP);
    EXPECT_TRUE(session.send(PF_Cmd_PARAMS_SETUP).ok());
    const std::vector<Control>& controls = session.controls();
    ASSERT_EQ(controls.size(), std::size(rows));
    for (std::size_t i = 0; i < controls.size(); ++i) {
        const Control& c = controls[i];
        const Row& row = rows[i];
        SCOPED_TRACE(row.name);
        EXPECT_EQ(c.index, static_cast<int>(i) + 1);
        EXPECT_EQ(c.name, row.name);
        EXPECT_EQ(c.type, row.type);
        EXPECT_EQ(c.id, row.id);
        EXPECT_EQ(c.flags, row.flags);
        EXPECT_EQ(c.definition.ui_flags, 0);
        EXPECT_EQ(c.default_value, row.start);
        std::string text = c.label;
        for (const std::string& choice : c.choices) text += (text.empty() ? "" : "|") + choice;
        EXPECT_EQ(text, row.text);
        if (row.type != kSlider) continue;
        const double least = row.id == 27 ? 66.0 / 65536.0 : 0.0;  // "Gamma" starts at a raw value
        EXPECT_EQ(c.valid_min, least);
        EXPECT_EQ(c.slider_min, least);
        EXPECT_EQ(c.valid_max, row.valid_max);
        EXPECT_EQ(c.slider_max, row.slider_max);
        EXPECT_EQ(c.precision, 1);
        EXPECT_EQ(c.definition.u.fd.value, c.definition.u.fd.dephault);
        EXPECT_EQ(c.definition.u.fd.display_flags, 0);
    }
    EXPECT_EQ(session.out_data().num_params, 28);
}

}  // namespace
}  // namespace zam::test
