// What the program tells of lights that take part, held against the frames that the plug-in renders.
#include "cli/participation.h"

#include <gtest/gtest.h>

#include <functional>
#include <random>

#include "tests/contract/zam_fixture.h"

namespace zam::test {
namespace {

using Setting = std::pair<const char*, double>;

struct Scene {
    std::vector<Setting> settings;
    Composition composition = make_composition(32, 18);
};

// Does the frame change when this light is dark? Its intensity is what the effect honours in every case.
bool adds_light(Running& running, LayerId id, double frame) {
    const RenderSettings deep{.depth = Depth::bits16};
    const Frame with = running.render(frame, deep);
    Layer& layer = *running.comp.find_layer(id);
    const Animated<double> before = std::exchange(layer.light.intensity, 0.0);
    const Frame without = running.render(frame, deep);
    layer.light.intensity = before;
    return with.argb != without.argb;
}

// How many of the lights take part; every answer is compared with the frame.
int check(const Scene& scene, int frame) {
    Running running(scene.composition);
    for (const auto& [control, value] : scene.settings) running.set(control, value);
    const cli::Participation participation(running.session, running.comp, frame);
    int count = 0;
    for (std::size_t i = 0; i < running.comp.layers.size(); ++i) {
        const Layer layer = running.comp.layers[i];
        if (layer.kind != LayerKind::light) continue;
        const auto reasons = participation.reasons_against(layer);
        EXPECT_EQ(reasons.empty(), adds_light(running, layer.id, frame))
            << layer.name << " at frame " << frame << ", intensity " << layer.light.intensity.at(frame)
            << ::testing::PrintToString(reasons) << ::testing::PrintToString(scene.settings);
        count += reasons.empty() ? 1 : 0;
    }
    return count;
}

// Lights of both kinds in the picture, each with something to be left out for.
Composition one_of_each() {
    Composition comp = make_composition(32, 18);
    const Vec3 left{4, 9, 10}, ahead{4, 9, 200}, right{22, 9, 10};  // apart: beams are full where they begin
    const std::vector<std::function<void(Layer&)>> traits = {
        [](Layer&) {},
        [](Layer& l) { l.video = false; },
        [](Layer& l) { l.light.intensity = 0.0; },
        [](Layer& l) { l.light.intensity = -5.0; },
        [](Layer& l) { l.in_frame = 5; },
        [](Layer& l) { l.out_frame = 5; },
        [](Layer& l) { l.light.shadow_darkness = 0.0; },
        [](Layer& l) { l.light.cone_angle = 0.0; },
        [](Layer& l) { l.name = "Back lamp"; },
        [](Layer& l) { l.light.type = LightType::parallel; },
    };
    for (const auto& trait : traits)
        for (const bool spot : {true, false}) {
            Layer& light = spot ? add_spot(comp, left, ahead, "Front") : add_point(comp, right, "Front");
            light.light.intensity = 8.0;
            trait(light);
        }
    return comp;
}

TEST(Participation, AgreesWithTheFrames) {
    const std::vector<std::vector<Setting>> looks = {
        {},
        {{"Use Lights that are", 2}},
        {{"Use Lights that are", 3}, {"Name starts with", 4}},
        {{"Name starts with", 3}, {"Spot Light Model", 1}},
        {{"Point Light Model", 1}, {"Individual Reach", 2}},
        {{"Individual Reach", 3}, {"Individual Radius", 3}, {"Point Light Model", 3}},
        {{"Spot Lights/Intensity", 0}, {"Point Lights/Intensity", 0}},
        {{"Point Light Model", 4}, {"Point Lights/Intensity", 0}},
        {{"Point Light Model", 4}, {"Source Radius", 0}, {"Radius", 0}},
        {{"Point Light Model", 5}, {"Source Intensity", 0}, {"Reach", 4}},
        {{"Point Light Model", 5},
         {"Source Intensity", 5},
         {"Point Lights/Light's Intensity", 0},
         {"Radius", 0}},
    };
    int counted = 0;
    for (std::vector<Setting> settings : looks) {
        settings.emplace_back("Look", 2.0);  // sums of light as they are
        for (const int frame : {4, 5, 6}) counted += check({settings, one_of_each()}, frame);
    }
    EXPECT_GT(counted, 100);
    Scene soloed{{{"Look", 2.0}}, one_of_each()};
    soloed.composition.layers[3].solo = true;
    EXPECT_EQ(check(soloed, 4), 1);
}

// The effect's cones depend on the length of their axis.
TEST(Participation, AgreesWithTheFramesUnderScaledParents) {
    int counted = 0;
    for (const double scale : {50.0, 80.0, 100.0, 120.0})
        for (const double angle : {0.0, 30.0, 80.0})
            for (const bool scales_camera : {false, true}) {
                Scene scene{{{"Look", 2.0}}};
                Layer& rig = add_layer(scene.composition, LayerKind::null_object, "Rig", {16, 9, 0});
                rig.transform.anchor = Vec3{16, 9, 0};
                rig.transform.scale = Vec3{scale, scale, scale};
                const LayerId parent = rig.id;
                Layer& light = add_spot(scene.composition, {16, 9, 0}, {16.7, 9.3, 100});
                light.light.cone_angle = angle;
                Layer& camera = add_camera(scene.composition, {16, 9, -50}, {16, 9, 0}, 50);
                (scales_camera ? camera : scene.composition.layers[1]).parent = parent;
                counted += check(scene, 4);
            }
    EXPECT_GT(counted, 6);
    EXPECT_LT(counted, 18);
}

// Scales of parents multiply: axes, and then places, leave what the effect takes as numbers. Lights at the anchor stay.
TEST(Participation, AgreesWithTheFramesBeyondAllBounds) {
    struct Case {
        int levels;
        double offset;
        int lights;
    };
    for (const Case& each : {Case{0, 0.0, 2}, {3, 0.0, 1}, {50, 1.0, 0}})
        for (const bool scales_camera : {false, true}) {
            SCOPED_TRACE(testing::Message()
                         << each.levels << (scales_camera ? " above camera" : " above lights"));
            Scene scene{{{"Look", 2.0}}};
            LayerId parent = 0;
            for (int level = 0; level < each.levels; ++level) {
                Layer& rig = add_layer(scene.composition, LayerKind::null_object, "Rig", {16, 9, 10});
                rig.transform.anchor = Vec3{16, 9, 10};
                rig.transform.scale = Vec3{1e9, 1e9, 1e9};
                rig.parent = std::exchange(parent, rig.id);
            }
            const LayerId spot = add_spot(scene.composition, {16 + each.offset, 9, 10}, {16, 9, 200}).id;
            const LayerId point = add_point(scene.composition, {16 + each.offset, 9, 10}).id;
            const LayerId camera = add_camera(scene.composition, {16, 9, -50}, {16, 9, 0}, 50).id;
            for (const LayerId id : scales_camera ? std::vector{camera} : std::vector{spot, point})
                scene.composition.find_layer(id)->parent = parent;
            const int counted = check(scene, 4);
            EXPECT_TRUE(scales_camera || counted == each.lights) << counted;
        }
}

// In and out points at every fraction of odd rates: the effect's seconds are rounded.
TEST(Participation, AgreesWithTheFramesAtInAndOutPoints) {
    std::mt19937 random(7);
    for (int round = 0; round < 150; ++round) {
        Scene scene{{{"Look", 2.0}}};
        const Ratio rates[] = {{24, 1}, {24000, 1001}, {25, 1}, {30000, 1001}, {15, 2}};
        scene.composition.frame_rate = rates[random() % 5];
        Layer& carrier = scene.composition.layers[0];
        const double fractions[] = {0.0, 0.5, 1.0 / 3.0};
        carrier.start_frame = fractions[random() % 3];
        carrier.stretch = random() % 2 ? 100.0 : 70.0;
        Layer& light = add_point(scene.composition, {16, 9, 10});
        light.light.intensity = 8.0;
        const int frame = 1 + static_cast<int>(random() % 60);
        const auto whole = [&](unsigned below) { return static_cast<double>(random() % below); };
        light.in_frame = frame + 1.0 - whole(3) - whole(2) * fractions[random() % 3];
        light.out_frame = std::max(light.in_frame + 0.5, frame + fractions[random() % 3]);
        check(scene, frame);
    }
}

}  // namespace
}  // namespace zam::test
