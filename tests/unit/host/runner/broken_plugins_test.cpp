#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

#include "tests/unit/host/runner/small_stage.h"
#include "tests/unit/message_of.h"

namespace zam::host {
namespace {

using ::testing::HasSubstr;

TEST(BrokenPlugins, FilesThatAreNoPlugIns) {
    const std::string text_file = broken_plugin("text");
    std::ofstream(text_file) << "not a library\n";
    EXPECT_THAT(message_of<PluginError>([] { Plugin("/no/such/file.so"); }),
                HasSubstr("/no/such/file.so: no such file"));
    EXPECT_THAT(message_of<PluginError>([&] { Plugin(text_file.c_str()); }),
                HasSubstr("not a loadable library: "));
    EXPECT_THAT(message_of<PluginError>([] { Plugin(broken_plugin("no_entry")); }),
                HasSubstr("exports no EntryPointFunc"));
}

// Each fault is reported by name in the command it happens in, and the session goes on to a clean end.
TEST(BrokenPlugins, FaultsAreReportedAndSurvived) {
    const struct {
        const char* plugin;
        PF_Cmd command;
        std::vector<std::string> reports;
    } cases[] = {
        {"sound", PF_Cmd_RENDER, {}},
        {"throws_exception", PF_Cmd_RENDER, {"an exception (no idea) left the entry point in PF_Cmd_RENDER"}},
        {"keeps_suite",
         PF_Cmd_RENDER,
         {"suite \"AEGP Item Suite\" 3 that is not held in ReleaseSuite",
          "suite \"AEGP Light Suite\" 1 held after PF_Cmd_RENDER"}},
        {"keeps_data", PF_Cmd_RENDER, {"handle of 96 bytes held after PF_Cmd_RENDER"}},
        {"keeps_data", PF_Cmd_SEQUENCE_SETDOWN, {"handle of 4 bytes held after PF_Cmd_SEQUENCE_SETDOWN"}},
        {"writes_past_row", PF_Cmd_RENDER, {"PF_Cmd_RENDER wrote past the end of output row 2"}},
        {"unbalanced_lock",
         PF_Cmd_RENDER,
         {"handle that is not locked in host_unlock_handle", "handle of 4 bytes locked after PF_Cmd_RENDER"}},
        {"row_throws", PF_Cmd_RENDER, {"a row threw an exception (third row) in iterate"}},
        {"endless_message", PF_Cmd_ABOUT, {}},
    };
    for (const auto& c : cases) {
        const Plugin plugin(broken_plugin(c.plugin));
        Composition composition = small_stage();
        Session session(plugin, composition, {.threads = 2});
        if (c.plugin != std::string("endless_message")) session.start();
        EXPECT_EQ(session.send(c.command).reports, c.reports) << c.plugin;
        EXPECT_EQ(session.reports(), c.reports) << c.plugin;
        EXPECT_TRUE(session.send(PF_Cmd_ABOUT).reports.empty()) << c.plugin;
    }
}

TEST(BrokenPlugins, WhatStartRefuses) {
    const std::pair<const char*, const char*> cases[] = {
        {"wrong_num_params",
         "PF_Cmd_PARAMS_SETUP set num_params to 12, but added 2 controls to the input layer"},
        {"keeps_streams",
         "effect reference from AEGP_GetNewEffectForEffect held after PF_Cmd_UPDATE_PARAMS_UI\n"
         "stream from AEGP_GetNewEffectStreamByIndex held after PF_Cmd_UPDATE_PARAMS_UI\n"
         "stream value from AEGP_GetNewStreamValue held after PF_Cmd_UPDATE_PARAMS_UI"},
        {"odd_controls",
         "control 1 \"aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa\" in add_param: name without a terminator\n"
         "control 2 \"Popup\" in add_param: persistent id 1 is used twice\n"
         "control 2 \"Popup\" in add_param: 4 choices announced, 1 named\n"
         "control 2 \"Popup\" in add_param: default outside the valid range\n"
         "control type 99 in add_param\n"
         "null definition in add_param\n"
         "index that is not the next one in add_param\n"
         "null effect_ref in add_param"},
        {"endless_message", "return_msg without a terminator after PF_Cmd_UPDATE_PARAMS_UI"},
    };
    for (const auto& [name, message] : cases) {
        const Plugin plugin(broken_plugin(name));
        Composition composition = small_stage();
        Session session(plugin, composition, {});
        EXPECT_THAT(message_of<PluginError>([&] { session.start(); }), HasSubstr(message)) << name;
        session.stop();
    }
}

}  // namespace
}  // namespace zam::host
