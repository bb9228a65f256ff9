// The Effect Controls panel: greying on both generations of hosts, and the control-update suite in all its
// versions.
#include <set>

#include "tests/contract/zam_fixture.h"

namespace zam::test {
namespace {

constexpr PF_SpecVersion kCurrent{13, 29}, kOlder{13, 2};

std::set<int> greyed(Running& running) {
    running.session.send(PF_Cmd_UPDATE_PARAMS_UI);
    std::set<int> disabled;
    for (int index = 1; index < 28; ++index) {
        if (running.session.is_disabled(index)) disabled.insert(index);
    }
    return disabled;
}

TEST(Greying, FollowsTheModels) {
    const struct {
        int point_model;
        std::set<int> disabled;  // with the layer of the spots, 19 and 20
    } points[] = {{1, {3, 4, 5, 6, 7, 8, 9, 19, 20}},
                  {2, {6, 7, 8, 9, 19, 20}},
                  {3, {8, 9, 19, 20}},
                  {4, {19, 20}},
                  {5, {4, 5, 6, 7, 19, 20}}};
    for (const PF_SpecVersion version : {kCurrent, kOlder}) {
        Running running(make_composition(), {.api_version = version});
        running.set("Look", 5);
        for (const auto& row : points) {
            running.set("Point Light Model", row.point_model);
            EXPECT_EQ(greyed(running), row.disabled) << row.point_model;
        }
        running.set("Point Light Model", 4);
        for (int look = 1; look <= 6; ++look) {
            running.set("Look", look);
            EXPECT_EQ(greyed(running), look < 5 ? std::set({19, 20, 26}) : std::set({19, 20})) << look;
        }
        running.set("Reach Comp Layer", 1);
        EXPECT_EQ(greyed(running), (std::set<int>{16, 17}));
        running.set("Spot Light Model", 1);
        EXPECT_EQ(greyed(running), (std::set<int>{13, 14, 15, 16, 17, 18, 19, 20}));
    }
}

TEST(Greying, UpdatesEveryControlInOrderAndRefreshes) {
    const Outcome outcome = Running(make_composition()).session.send(PF_Cmd_UPDATE_PARAMS_UI);
    EXPECT_TRUE(outcome.ok());
    EXPECT_EQ(outcome.out_flags, PF_OutFlag_REFRESH_UI);
    EXPECT_EQ(outcome.ui_updates,
              (std::vector<int>{4, 3, 6, 5, 7, 8, 9, 14, 17, 16, 18, 19, 20, 13, 15, 26}));
}

TEST(Greying, TakesAnyVersionOfTheSuite) {
    const std::string suite = "PF Param Utils Suite ";
    for (int served = 1; served <= 3; ++served) {
        SessionOptions options;
        for (int version = 1; version <= 3; ++version) {
            if (version != served) options.withheld_suites.push_back(suite + std::to_string(version));
        }
        Running running(make_composition(), options);
        running.set("Look", 5);
        EXPECT_EQ(greyed(running), (std::set<int>{6, 7, 8, 9, 19, 20})) << served;
        EXPECT_TRUE(running.session.send(PF_Cmd_UPDATE_PARAMS_UI).ok());
    }
}

TEST(Greying, SaysSoWhenThereIsNoSuite) {
    const struct {
        SessionOptions options;
        const char* message;
        std::size_t calls;
        std::vector<std::string> reports;
    } rows[] = {
        {{.withheld_suites = {"PF Param Utils Suite 1", "PF Param Utils Suite 2", "PF Param Utils Suite 3"},
          .record_calls = true},
         "Failed to acquire suite.",
         5,  // three acquisitions, one message, one release
         {"suite \"PF Param Utils Suite\" 1 that is not held in ReleaseSuite"}},
        {{.basic_suite = false, .record_calls = true}, "Failed to release suite.", 2, {}},
    };
    for (const auto& row : rows) {
        Composition comp = make_composition();
        Session session(zam_plugin(), comp, row.options);
        session.send(PF_Cmd_GLOBAL_SETUP);
        session.send(PF_Cmd_PARAMS_SETUP);
        session.send(PF_Cmd_SEQUENCE_SETUP);
        const Outcome outcome = session.send(PF_Cmd_UPDATE_PARAMS_UI);
        EXPECT_EQ(outcome.error, 0);
        EXPECT_EQ(outcome.message, row.message);
        EXPECT_TRUE(outcome.message_is_error);
        EXPECT_EQ(session.calls().size(), row.calls);
        EXPECT_EQ(outcome.reports, row.reports);
    }
}

}  // namespace
}  // namespace zam::test
