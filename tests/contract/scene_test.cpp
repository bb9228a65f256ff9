// Lights and cameras, seen in the frames. Which lights take part when is held in participation_test.cpp, too.
#include <algorithm>
#include <cmath>
#include <functional>

#include "tests/contract/zam_fixture.h"

namespace zam::test {
namespace {

Composition two_lights() {
    Composition comp = make_composition();
    add_point(comp, {20, 10, 40}, "Keep");
    add_spot(comp, {50, 5, 20}, {10, 36, 30}, "Other");
    return comp;
}

Layer& other(Composition& comp) { return comp.layers.front(); }

// The frame is that of a composition without the light.
TEST(Filters, SilenceALightAsIfItWereNotThere) {
    Composition without = two_lights();
    without.layers.erase(without.layers.begin());
    const std::pair<const char*, double> none{"Look", 3};  // as it is
    const auto named = [](const char* kept, const char* name) {
        return [=](Composition& c) {
            c.layers[1].name = kept;
            other(c).name = name;
        };
    };
    const auto hide_parent = [](Composition& c) {
        Layer& null = add_layer(c, LayerKind::null_object, "Rig", {0, 0, 0});
        null.video = false;
        c.layers[1].parent = null.id;
    };
    const auto shorter_reach = [](Composition& c) { other(c).light.shadow_diffusion = -401.0; };
    const struct {
        const char* what;
        std::function<void(Composition&)> change;
        std::pair<const char*, double> setting;
        bool silenced;
    } rows[] = {
        {"nothing", [](auto&) {}, none, false},
        {"its parent hidden", hide_parent, none, false},
        {"no prefix fits", named("Front key", "front key"), {"Name starts with", 3}, true},
        {"shorter than the prefix", named("Front", "Fro"), {"Name starts with", 3}, true},
        {"prefix fits", named("Back 1", "Back"), {"Name starts with", 4}, false},
        {"negative reach", shorter_reach, {"Individual Reach", 4}, true},
    };
    for (const auto& row : rows) {
        Composition comp = two_lights();
        row.change(comp);
        Running changed(comp), reference(without);
        changed.set(row.setting.first, row.setting.second);
        EXPECT_EQ(changed.render().argb == reference.render().argb, row.silenced) << row.what;
    }
}

TEST(Lights, TheirOwnIntensityCountsOnlyWhenUsed) {
    Composition half = two_lights(), full = two_lights();
    for (Layer& layer : half.layers) layer.light.intensity = 50.0;
    Running a(half), b(full);
    EXPECT_NE(a.render().argb, b.render().argb);
    a.set("Point Lights/Light's Intensity", 0);
    a.set("Spot Lights/Light's Intensity", 0);
    EXPECT_EQ(a.render().argb, b.render().argb);
}

TEST(Lights, AreSeenAtTheFramesCompositionTime) {
    Composition comp = two_lights();
    comp.layers.back().start_frame = 10;  // the effect's layer time runs 10 frames behind
    Layer& moving = other(comp);
    moving.transform.position.keys = {{0, {50, 5, 20}}, {40, {10, 30, 20}}};
    moving.light.intensity.keys = {{0, 0.0, Interpolation::hold}, {20, 100.0}};
    Composition still = two_lights();
    other(still).transform.position = Vec3{30, 17.5, 20};
    EXPECT_EQ(Running(comp).render(20).argb, Running(still).render(20).argb);
    EXPECT_NE(Running(comp).render(21).argb, Running(comp).render(20).argb);
}

TEST(Lights, MayHaveAScreenBoxBeyondAllWholeNumbers) {
    Composition comp = make_composition();
    add_camera(comp, {32, 18, -50}, {32, 18, 0}, 50);
    Layer& spot = add_spot(comp, {20, 5, 0}, {50, 30, 0});
    // Next to the camera's plane the box covers the whole picture; how near the light is makes no difference.
    spot.light.cone_angle = 30.0;
    spot.light.cone_feather = 0.0;
    spot.transform.point_of_interest = Vec3{40, 30, -10};
    const auto at_depth = [&](double depth) {
        spot.transform.position = Vec3{20, 5, -50 + depth};
        return Running(comp).render();
    };
    EXPECT_FALSE(is_black(at_depth(1e-4)));
    EXPECT_EQ(at_depth(1e-8).argb, at_depth(1e-4).argb);
}

TEST(Camera, ViewsOfNothingGiveAnEmptyLayer) {
    const auto made_handles = [](Running& running) {
        const std::vector<std::string>& calls = running.session.calls();
        return std::count(calls.begin(), calls.end(), "Utils.host_new_handle");
    };
    Running usual(two_lights(), {.record_calls = true});
    EXPECT_FALSE(is_black(usual.render()));
    EXPECT_EQ(made_handles(usual), 4);
    // Nothing is prepared for lights that are not drawn: a division by nothing would go unseen in the frame.
    const auto expect_nothing = [&](Running running) {
        const Frame frame = running.render();
        EXPECT_TRUE(frame.outcome.ok());
        EXPECT_TRUE(is_black(frame));
        EXPECT_EQ(made_handles(running), 2);
    };
    for (const double zoom : {0.0, std::nan("")}) {
        Composition flat = two_lights();
        add_camera(flat, {32, 18, -50}, {32, 18, 0}, zoom);
        expect_nothing(Running(flat, {.record_calls = true}));
    }
    for (const PF_RationalScale nothing : {PF_RationalScale{0, 1}, PF_RationalScale{1, 0}}) {
        for (const auto ratio :
             {&PF_InData::pixel_aspect_ratio, &PF_InData::downsample_x, &PF_InData::downsample_y}) {
            expect_nothing(Running(
                two_lights(),
                {.amend_in_data = [=](PF_InData& in) { in.*ratio = nothing; }, .record_calls = true}));
        }
    }
}

}  // namespace
}  // namespace zam::test
