#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

#include "tests/unit/host/runner/small_stage.h"

namespace zam::host {
namespace {

using ::testing::ElementsAre;

class SessionTest : public ::testing::Test {
  protected:
    std::string journal() const { return reinterpret_cast<const char* (*)()>(plugin.symbol("Journal"))(); }

    const Plugin plugin{broken_plugin("sound")};
    Composition composition = small_stage();
};

// What is valid when: nothing more than promised comes with a command.
TEST_F(SessionTest, EachCommandBringsWhatTheInterfacePromises) {
    Session session(plugin, composition, {.api_version = {13, 2}});
    const std::string when = " time 0/30000 step 1001 size 7x5";
    const std::pair<PF_Cmd, std::string> steps[] = {
        {PF_Cmd_GLOBAL_SETUP, ""},
        {PF_Cmd_PARAMS_SETUP, ""},
        {PF_Cmd_SEQUENCE_SETUP, " size 7x5"},
        {PF_Cmd_ABOUT, ""},
        {PF_Cmd_SEQUENCE_FLATTEN, " sequence 42 size 7x5"},
        {PF_Cmd_UPDATE_PARAMS_UI, " params 2 327680 sequence 42" + when},
        {PF_Cmd_USER_CHANGED_PARAM, " params 2 327680 sequence 42" + when + " extra"},
        {PF_Cmd_FRAME_SETUP, " params 2 327680 sequence 42" + when},
        {PF_Cmd_RENDER, " params 2 327680 input sequence 42" + when + " output 7x5"},
        {PF_Cmd_SEQUENCE_SETDOWN, " sequence 42 size 7x5"},
        {PF_Cmd_GLOBAL_SETDOWN, ""},
    };
    composition.layers[0].start_frame = 0;
    for (const auto& [command, expected] : steps) {
        const Outcome outcome = session.send(command);
        EXPECT_TRUE(outcome.ok()) << command;
        EXPECT_EQ(outcome.message, "seen");
        EXPECT_EQ(journal(), "version 13.2" + expected) << "command " << command;
    }
    EXPECT_EQ(session.out_data().num_params, 3);
}

TEST_F(SessionTest, FramesAreRenderedAtTheLayersTimeInBothDepthsAndAnyResolution) {
    Session session(plugin, composition, {.threads = 3});
    session.start();
    Frame frame = session.render(12, {});
    EXPECT_THAT(journal(), ::testing::HasSubstr("step 1001"));
    EXPECT_TRUE(frame.outcome.ok());
    ASSERT_EQ(frame.argb.size(), 7U * 5 * 4);
    for (std::size_t y = 0; y < 5; ++y) {
        for (std::size_t x = 0; x < 7; ++x) {
            const auto* pixel = &frame.argb[(y * 7 + x) * 4];
            EXPECT_THAT(std::vector<int>(pixel, pixel + 4), ElementsAre(0, y, 0, 0)) << x << " " << y;
        }
    }
    session.send(PF_Cmd_RENDER);  // at the same frame
    EXPECT_THAT(journal(), ::testing::HasSubstr("time 10010/30000 step 1001"));

    frame = session.render(12.5, {.depth = Depth::bits16, .downsample_x = {1, 2}, .downsample_y = {1, 4}});
    EXPECT_EQ(frame.width, 4);  // 3.5 and 1.25, rounded up
    EXPECT_EQ(frame.height, 2);
    EXPECT_THAT(std::vector<int>(frame.argb.end() - 4, frame.argb.end()), ElementsAre(0, 1001, 0, 0));
    session.send(PF_Cmd_UPDATE_PARAMS_UI);  // layer time 10.5 frames, on a finer scale
    EXPECT_THAT(journal(), ::testing::HasSubstr("time 105105/300000 step 10010 size 7x5"));
}

TEST_F(SessionTest, ControlsCarryTheValuesOfTheFrameWithinTheirRange) {
    Session session(plugin, composition, {});
    EXPECT_THROW(session.apply_settings({3, {{"Mode", ControlValue("Hard"), ""}}}),
                 ControlError);  // not started
    session.start();
    session.apply_settings({3, {{"Mode", ControlValue("Hard"), ""}}});
    Animated<double> amount;
    amount.keys = {{0, 0.0}, {100, 1000.0}};
    session.set_control(2, amount);
    (void)session.render(5, {});
    session.send(PF_Cmd_UPDATE_PARAMS_UI);
    EXPECT_THAT(journal(), ::testing::HasSubstr("params 3 3276800 "));
    Animated<double> mode;
    mode.keys = {{0, 1.0}, {100, 3.0}};
    session.set_control(1, mode);  // a choice stays until its next key
    (void)session.render(50, {});  // 500, clamped to 100
    session.send(PF_Cmd_UPDATE_PARAMS_UI);
    EXPECT_THAT(journal(), ::testing::HasSubstr("params 1 6553600 "));
    const EffectSettings half_wrong{3,
                                    {{"Mode", ControlValue("Hard"), ""}, {"Amount", ControlValue(true), ""}}};
    EXPECT_THROW(session.apply_settings(half_wrong), ControlError);
    session.send(PF_Cmd_UPDATE_PARAMS_UI);
    EXPECT_THAT(journal(), ::testing::HasSubstr("params 1 6553600 "));  // nothing of it was set
    EXPECT_THROW(session.set_control(3, 1.0), ControlError);
}

TEST_F(SessionTest, CompositionsWithoutAPlaceForTheEffectAreRefused) {
    Composition none = small_stage();
    none.effect.layer = 9;
    EXPECT_THROW(Session(plugin, none, {}), PluginError);
    Composition huge = small_stage();
    huge.items = {{1, "poster", 40000, 10}};
    huge.layers[0].source = 1;
    EXPECT_THROW(Session(plugin, huge, {}), PluginError);
    Session session(plugin, composition, {});
    EXPECT_THROW((void)session.render(0, {}), PluginError);  // not started
    session.start();
    EXPECT_THROW((void)session.render(0, {.downsample_x = {0, 1}}), PluginError);
}

// Callbacks carry no context: each must find the session whose command runs on its thread.
TEST_F(SessionTest, SessionsInSeveralThreadsDoNotMixTheirBooks) {
    const Plugin kept_suite(broken_plugin("keeps_suite"));
    const Plugin stray_write(broken_plugin("writes_past_row"));
    const std::pair<const Plugin*, std::string> works[] = {
        {&kept_suite, "suite \"AEGP Light Suite\" 1 held after PF_Cmd_RENDER"},
        {&stray_write, "PF_Cmd_RENDER wrote past the end of output row 2"},
        {&stray_write, "PF_Cmd_RENDER wrote past the end of output row 2"},
    };
    std::vector<std::thread> threads;
    for (const auto& work : works) {
        threads.emplace_back([&work] {
            Composition own = small_stage();
            own.height = 40;
            Session session(*work.first, own, {.threads = 2});
            session.start();
            for (int frame = 0; frame < 30; ++frame) {
                const Frame image = session.render(frame, {});
                EXPECT_EQ(image.outcome.reports.back(), work.second);
                EXPECT_EQ(image.argb[39 * 7 * 4 + 1], 39);
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
}

}  // namespace
}  // namespace zam::host
