// What a host answers badly: every call of a command failing once, each suite withheld, a cancelled frame.
#include <algorithm>
#include <map>
#include <memory>

#include "tests/contract/zam_fixture.h"

namespace zam::test {
namespace {

// Everything in it: both kinds of lights, a camera, a reach layer.
Composition rich_composition() {
    Composition comp = make_composition(24, 16);
    comp.items.push_back({2, "Wall source", 40, 40});
    Layer& wall = add_layer(comp, LayerKind::solid, "", {16, 0, 0});
    wall.source = 2;
    wall.transform.rotation_y = 70.0;
    add_point(comp, {8, 4, 5}, "Front lamp");
    add_spot(comp, {4, 2, 0}, {20, 12, 4}, "Front beam");
    add_camera(comp, {12, 8, -30}, {12, 8, 0}, 30);
    return comp;
}

constexpr LayerId kWall = 2;

struct RichSession : Running {
    RichSession() : Running(rich_composition(), {.threads = 1, .record_calls = true}) {
        set("Reach Comp Layer", 1);
        set("Name starts with", 3);
        pick();
    }
    Outcome pick() { return session.choose_layer(index_of("Set Reach Layer"), kWall, 0); }
};

// The calls of the last command, each with its number among the calls of that name.
std::vector<std::pair<std::string, int>> numbered_calls(const Session& session) {
    std::vector<std::pair<std::string, int>> numbered;
    std::map<std::string, int> seen;
    for (const std::string_view call : session.calls()) {
        const std::string name(call);
        numbered.emplace_back(name, ++seen[name]);
    }
    return numbered;
}

// A call that gives something back: what the host refuses to take stays held.
bool gives_back(const std::string& call) {
    for (const char* word : {"Release", "Dispose", "dispose", "unlock"}) {
        if (call.find(word) != std::string::npos) return true;
    }
    return false;
}

TEST(Failures, EveryHostCallOfARenderFailsOnce) {
    RichSession clean;
    const Frame good = clean.render();
    ASSERT_TRUE(good.outcome.ok()) << ::testing::PrintToString(good.outcome.reports);
    ASSERT_FALSE(is_black(good));
    const auto calls = numbered_calls(clean.session);
    ASSERT_GT(calls.size(), 60U);
    for (const auto& [name, nth] : calls) {
        SCOPED_TRACE(name + " " + std::to_string(nth));
        EXPECT_EQ(name.find("before expressions"), std::string::npos);
        RichSession running;
        running.session.set_faults(FaultPlan().fail(name, nth, 1));
        const Outcome outcome = running.render().outcome;
        if (!gives_back(name)) {
            EXPECT_EQ(outcome.reports, std::vector<std::string>{});
        }
        const bool missing_suite = name == "Basic.AcquireSuite";
        EXPECT_EQ(outcome.thrown, missing_suite ? std::optional<int>(516) : std::nullopt);
        EXPECT_EQ(outcome.error, name == "Utils.iterate" ? 1 : 0);
        // And the next frame is as good as ever.
        running.session.set_faults({});
        EXPECT_EQ(running.render().argb, good.argb);
    }
}

TEST(Failures, EveryHostCallOfPickingALayerFailsOnce) {
    for (const bool renames : {false, true}) {
        const auto prepare = [&] {
            auto running =
                std::make_unique<Running>(rich_composition(), SessionOptions{.record_calls = true});
            if (renames) running->session.choose_layer(running->index_of("Set Reach Layer"), kWall, 0);
            return running;
        };
        const auto clean = prepare();
        const int index = clean->index_of("Set Reach Layer");
        ASSERT_TRUE(clean->session.choose_layer(index, kWall, 0).ok());
        ASSERT_EQ(clean->comp.layers.size(), rich_composition().layers.size() + 1);
        const auto calls = numbered_calls(clean->session);
        ASSERT_GT(calls.size(), 40U);
        const auto acquired =
            std::count(clean->session.calls().begin(), clean->session.calls().end(), "Basic.AcquireSuite");
        for (const auto& [name, nth] : calls) {
            SCOPED_TRACE(name + " " + std::to_string(nth));
            EXPECT_EQ(name.find("before expressions"), std::string::npos);
            const auto running = prepare();
            running->session.set_faults(FaultPlan().fail(name, nth, 1));
            const Outcome outcome = running->session.choose_layer(index, kWall, 0);
            EXPECT_EQ(outcome.error, 0);
            if (!gives_back(name)) {
                EXPECT_EQ(outcome.reports, std::vector<std::string>{});
            }
            // The first suite of either command is the control updates', which has other versions to fall
            // back on.
            const bool scene_suite = name == "Basic.AcquireSuite" && nth > 1 && nth < acquired;
            EXPECT_EQ(outcome.thrown, scene_suite ? std::optional<int>(516) : std::nullopt);
        }
    }
}

TEST(Failures, EverySuiteWithheldEndsTheCommandWithAnInt) {
    const char* render_suites[] = {"AEGP PF Interface Suite 1", "AEGP Layer Suite 5", "AEGP Layer Suite 8",
                                   "AEGP Light Suite 1", "AEGP Stream Suite 4"};
    for (const char* suite : render_suites) {
        Running running(rich_composition(), {.withheld_suites = {suite}});
        running.set("Reach Comp Layer", 1);
        const Outcome outcome = running.render().outcome;
        EXPECT_EQ(outcome.thrown, std::optional<int>(516)) << suite;
        EXPECT_EQ(outcome.reports, std::vector<std::string>{}) << suite;
    }
    const char* pick_suites[] = {"AEGP PF Interface Suite 1", "AEGP Layer Suite 8", "AEGP Light Suite 1",
                                 "AEGP Stream Suite 4",       "AEGP Comp Suite 9",  "AEGP Item Suite 3",
                                 "AEGP Keyframe Suite 1",     "AEGP Effect Suite 1"};
    for (const char* suite : pick_suites) {
        Running running(rich_composition(), {.withheld_suites = {suite}});
        const Outcome outcome = running.session.choose_layer(running.index_of("Set Reach Layer"), kWall, 0);
        EXPECT_EQ(outcome.thrown, std::optional<int>(516)) << suite;
        EXPECT_EQ(outcome.reports, std::vector<std::string>{}) << suite;
    }
    // Without a camera the default view asks one suite more.
    Composition no_camera = rich_composition();
    no_camera.layers.erase(no_camera.layers.begin());
    Running running(no_camera, {.withheld_suites = {"AEGP Camera Suite 2"}});
    EXPECT_EQ(running.render().outcome.thrown, std::optional<int>(516));
}

TEST(Failures, NoBasicSuiteEndsARenderTheSameWay) {
    Composition comp = rich_composition();
    Session session(zam_plugin(), comp, {.basic_suite = false});
    for (const PF_Cmd command : {PF_Cmd_GLOBAL_SETUP, PF_Cmd_PARAMS_SETUP, PF_Cmd_SEQUENCE_SETUP}) {
        EXPECT_TRUE(session.send(command).ok());
    }
    const Frame frame = session.render(0, {});
    EXPECT_EQ(frame.outcome.thrown, std::optional<int>(516));
    EXPECT_EQ(frame.outcome.reports, std::vector<std::string>{});
    EXPECT_TRUE(session.send(PF_Cmd_SEQUENCE_SETDOWN).ok());
    EXPECT_TRUE(session.send(PF_Cmd_GLOBAL_SETDOWN).ok());
}

TEST(Failures, ASuiteOfNothingIsAMissingOne) {
    SPBasicSuite hollow{};
    hollow.AcquireSuite = [](const char*, int32, const void**) { return SPErr{0}; };
    hollow.ReleaseSuite = [](const char*, int32) { return SPErr{0}; };
    Running running(rich_composition(), {.amend_in_data = [&](PF_InData& in) { in.pica_basicP = &hollow; }});
    EXPECT_EQ(running.render().outcome.thrown, std::optional<int>(516));
}

TEST(Failures, ACancelledFrameIsPassedOn) {
    RichSession running;
    running.session.set_faults(FaultPlan().fail("Utils.iterate", 1, PF_Interrupt_CANCEL));
    const Frame frame = running.render();
    EXPECT_EQ(frame.outcome.error, PF_Interrupt_CANCEL);
    EXPECT_EQ(frame.outcome.reports, std::vector<std::string>{});
}

TEST(Failures, WithoutMemoryAKindOfLightIsLeftOut) {
    Composition comp = rich_composition();
    const auto without = [&](LightType type) {
        Composition less = comp;
        std::erase_if(less.layers,
                      [&](const Layer& l) { return l.kind == LayerKind::light && l.light.type == type; });
        return Running(less).render().argb;
    };
    // Point lights, spot lights, then the spots' and the points' constants.
    const struct {
        int nth;
        LightType lost;
    } rows[] = {{1, LightType::point}, {2, LightType::spot}, {3, LightType::spot}, {4, LightType::point}};
    for (const auto& row : rows) {
        Running running(comp);
        running.session.set_faults(FaultPlan().fail("Utils.host_new_handle", row.nth, 4));
        const Frame frame = running.render();
        EXPECT_TRUE(frame.outcome.ok()) << row.nth;
        EXPECT_EQ(frame.argb, without(row.lost)) << row.nth;
    }
}

}  // namespace
}  // namespace zam::test
