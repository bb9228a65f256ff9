// The reach light's life: made, found again, renamed. What it does to the cones is in the golden frames.
#include <algorithm>

#include "tests/contract/zam_fixture.h"

namespace zam::test {
namespace {

constexpr LayerId kWall = 3;

Composition with_wall() {
    Composition comp = make_composition();
    add_spot(comp, {10, 18, 0}, {60, 18, 0});
    comp.items.push_back({2, "Wall source", 40, 40});
    Layer& wall = add_layer(comp, LayerKind::solid, "Wall", {40, 0, 0});
    wall.source = 2;
    wall.transform.rotation_y = 90.0;  // its z axis points right
    return comp;
}

const Layer* reach_light(const Composition& comp, LayerId parent) {
    for (const Layer& layer : comp.layers) {
        if (layer.kind == LayerKind::light && layer.parent == parent && parent != 0) return &layer;
    }
    return nullptr;
}

Outcome pick(Running& running, LayerId id) {
    return running.session.choose_layer(running.index_of("Set Reach Layer"), id, 0);
}

std::vector<std::uint8_t> bytes_of(LayerId id) {
    return {static_cast<std::uint8_t>(id), static_cast<std::uint8_t>(id >> 8), 0, 0};
}

TEST(Reach, PickingALayerMakesAHiddenLightAndPickingAgainRenamesIt) {
    Running running(with_wall());
    const Outcome picked = pick(running, kWall);
    EXPECT_TRUE(picked.ok()) << ::testing::PrintToString(picked.reports);
    EXPECT_TRUE(picked.out_flags & PF_OutFlag_REFRESH_UI);
    EXPECT_EQ(picked.changed_controls, std::vector<int>{running.index_of("Set Reach Layer")});
    EXPECT_EQ(running.session.sequence_bytes(), bytes_of(kWall));
    const Layer* light = reach_light(running.comp, kWall);
    ASSERT_NE(light, nullptr);
    EXPECT_EQ(light->name, "Zam Reach [Wall]");
    EXPECT_EQ(light->light.type, LightType::spot);
    EXPECT_FALSE(light->video);
    EXPECT_TRUE(light->shy);
    EXPECT_TRUE(light->locked);
    EXPECT_EQ(light->light.intensity.at(0), 0.0);
    EXPECT_EQ(light->transform.position.at(0), Vec3{});
    EXPECT_EQ(light->start_frame, 0.0);

    // Keyframed intensity is the user's own.
    running.comp.find_layer(kWall)->name = "A very long layer name indeed";
    Layer* mine = running.comp.find_layer(light->id);
    mine->light.intensity.keys = {{0, 5.0}, {10, 7.0}};
    mine->locked = false;
    const std::size_t layers = running.comp.layers.size();
    pick(running, kWall);
    EXPECT_EQ(running.comp.layers.size(), layers);
    EXPECT_EQ(reach_light(running.comp, kWall)->name, "Zam Reach [A very long layer na");
    EXPECT_EQ(reach_light(running.comp, kWall)->light.intensity.at(10), 7.0);
    EXPECT_TRUE(reach_light(running.comp, kWall)->locked);
}

TEST(Reach, TheNewLightIsASpotFromTheStartWhateverTheHostMakes) {
    const auto made_with = [](SessionOptions options) {
        options.record_calls = true;
        Running running(with_wall(), std::move(options));
        const Outcome picked = pick(running, kWall);
        EXPECT_EQ(picked.reports, std::vector<std::string>{});
        // Other hosts' layers may begin elsewhere than at 0.
        const std::vector<std::string>& calls = running.session.calls();
        EXPECT_EQ(std::count(calls.begin(), calls.end(), "Layer.AEGP_SetLayerOffset"), 1);
        const Layer* light = reach_light(running.comp, kWall);
        if (!picked.thrown) {
            EXPECT_TRUE(light && light->light.type == LightType::spot && light->locked);
        }
        return picked.thrown;
    };
    for (const LightType made : {LightType::parallel, LightType::point, LightType::ambient}) {
        EXPECT_EQ(made_with({.new_light_type = made}), std::nullopt);
    }
    // The suite that changes types is wanted only when there is something to change.
    const std::vector<std::string> withheld{"AEGP Light Suite 2"};
    EXPECT_EQ(made_with({.withheld_suites = withheld}), std::nullopt);
    EXPECT_EQ(made_with({.new_light_type = LightType::point, .withheld_suites = withheld}),
              std::optional(516));
}

TEST(Reach, TheLayerIsAskedForAtTheEffectsOwnTime) {
    Composition comp = with_wall();
    const LayerId early = kWall, late = add_layer(comp, LayerKind::null_object, "Late", {}).id;
    comp.find_layer(1)->start_frame = 10;  // frame 20 of the composition is the effect's frame 10
    Running running(comp);
    Animated<double> picked;
    picked.keys = {{0, static_cast<double>(early), Interpolation::hold}, {15, static_cast<double>(late)}};
    running.session.set_control(running.index_of("Set Reach Layer"), picked);
    running.render(20);
    EXPECT_TRUE(running.session.send(PF_Cmd_USER_CHANGED_PARAM).ok());
    EXPECT_EQ(running.session.sequence_bytes(), bytes_of(early));
}

TEST(Reach, SomeLayersAreNotAccepted) {
    Composition comp = with_wall();
    Layer& flat = add_layer(comp, LayerKind::solid, "Flat", {0, 0, 0});
    flat.three_d = false;
    flat.source = 1;
    const LayerId flat_id = flat.id;
    comp.find_layer(1)->three_d = true;  // the effect's own layer
    for (const LayerId id : {LayerId{0}, flat_id, LayerId{1}}) {
        Running running(comp);
        for (const LayerId before : {LayerId{0}, kWall}) {
            pick(running, before);
            const std::size_t layers = running.comp.layers.size();
            EXPECT_TRUE(pick(running, id).ok()) << id;
            EXPECT_EQ(running.comp.layers.size(), layers) << id;
            EXPECT_EQ(running.session.sequence_bytes(), bytes_of(before)) << id;
        }
    }
}

TEST(Reach, IsRecognisedByNameAndParent) {
    // A spot named like the beginning of the reach light's name, parented to the wall, is taken for it; one
    // parented elsewhere is not. A layer without a name goes by its source's.
    for (const bool parented : {true, false}) {
        Composition comp = with_wall();
        comp.find_layer(kWall)->name = "";
        Layer& zam = add_spot(comp, {0, 0, 0}, {0, 0, 0}, "Zam");
        const LayerId zam_id = zam.id;
        if (parented) zam.parent = kWall;
        Running running(comp);
        pick(running, kWall);
        EXPECT_EQ(running.comp.find_layer(zam_id)->name, parented ? "Zam Reach [Wall source]" : "Zam");
        EXPECT_EQ(running.comp.layers.size(), comp.layers.size() + (parented ? 0 : 1));
    }
}

TEST(Reach, OlderHostsLookAfterTheLightOnEveryCall) {
    Running running(with_wall(), {.api_version = {13, 2}});
    pick(running, kWall);
    EXPECT_EQ(running.session.sequence_bytes(), bytes_of(0));  // "Reach Comp Layer" is off
    running.set("Reach Comp Layer", 1);
    const Outcome found = running.session.send(PF_Cmd_UPDATE_PARAMS_UI);
    EXPECT_EQ(found.error, 0);
    EXPECT_EQ(found.changed_controls, std::vector<int>{running.index_of("Set Reach Layer")});
    EXPECT_EQ(running.session.sequence_bytes(), bytes_of(kWall));
    // A new id ends the call early, with the suite still held and nothing greyed.
    ASSERT_EQ(found.reports.size(), 1U);
    EXPECT_NE(found.reports[0].find("PF Param Utils Suite"), std::string::npos);
    EXPECT_FALSE(running.session.is_disabled(16));
    EXPECT_TRUE(running.session.send(PF_Cmd_UPDATE_PARAMS_UI).ok());
    EXPECT_TRUE(running.session.is_disabled(16));
}

TEST(Reach, WithoutALightTheConesEndAtTheirReach) {
    Running plain(with_wall()), active(with_wall());
    for (Running* running : {&plain, &active}) running->set("Reach", 20);
    active.set("Reach Comp Layer", 1);
    EXPECT_EQ(active.render().argb, plain.render().argb);
}

}  // namespace
}  // namespace zam::test
