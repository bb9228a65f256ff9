// Thousands of frames in one process, each of another scene: nothing is kept, and nothing wears out. ZAM_FRAMES says how
// many; the figures are printed.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <random>
#include <string_view>

#include "tests/contract/zam_fixture.h"

#if defined(__has_feature)
#define ZAM_SANITIZED (__has_feature(address_sanitizer) || __has_feature(thread_sanitizer))
#else
#define ZAM_SANITIZED 0
#endif

namespace zam::test {
namespace {

constexpr int kScenes = 50;                // that are rendered in turn
constexpr int kLifeFrames = 500;           // after which the effect is taken off and applied anew
constexpr double kAllowedGrowthKib = 512;  // of resident memory, after a fifth of the run

// What of this process is in memory; 0 where that is not told, or where sanitizers or an emulator keep what is given back.
double resident_kib() {
    double kib = 0;
#if !ZAM_SANITIZED && !defined(ZAM_EMULATED)
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        if (word == "VmRSS:") status >> kib;
    }
#endif
    return kib;
}

// The scene of that number, made in place of the one before: none to a dozen lights, a wall for the reach, perhaps a camera,
// all controls, one of both depths, one of three resolutions.
class Scene {
  public:
    explicit Scene(unsigned number) : number_(number), dice_(number) {}

    Frame render(Composition& comp, Session& session) {
        comp.layers.erase(std::remove_if(comp.layers.begin(), comp.layers.end(),
                                         [&](const Layer& layer) { return layer.id != comp.effect.layer; }),
                          comp.layers.end());
        Layer& wall = add_layer(comp, LayerKind::solid, "Wall", {between(20, 60), 18, 0});
        wall.transform.rotation_y = between(0, 90);
        const LayerId reach = wall.id;
        for (int lights = pick(13); lights > 0; --lights) {
            const Vec3 at{between(-20, 84), between(-10, 46), between(-60, 200)};
            const std::string name = lights % 2 ? "Front 40" : "Back";
            Layer& light = lights % 3 ? add_spot(comp, at, {between(0, 64), between(0, 36), 50}, name)
                                      : add_point(comp, at, name);
            light.light.color = Color{between(0, 1), between(0, 1), between(0, 1)};
            light.light.intensity = between(0, 100);
            light.light.cone_angle = between(1, 179);
            light.video = pick(8) != 0;
            Animated<Vec3> way;
            way.keys = {{0, at}, {60, Vec3{at.z, at.x, at.y}}};
            light.transform.position = way;
        }
        if (pick(2)) add_camera(comp, {32, 18, between(-200, -20)}, {32, 18, 0}, between(20, 200));
        for (const Control& control : session.controls()) {
            const bool any_light = control.group == "General" && control.name != "Look" && pick(4) > 0;
            if (control.type == PF_Param_POPUP)
                session.set_control(control.index,
                                    any_light ? 1.0 : 1.0 + pick(static_cast<int>(control.choices.size())));
            if (control.type == PF_Param_CHECKBOX) session.set_control(control.index, 1.0 * pick(2));
            if (control.type == PF_Param_FIX_SLIDER)
                session.set_control(control.index, between(control.slider_min, control.slider_max));
        }
        if (number_ % 5 == 0) {
            const int control = find_control(session.controls(), "Set Reach Layer").index;
            EXPECT_TRUE(session.choose_layer(control, reach, 0).ok());
        }
        const Ratio scale{1, 1U << pick(3)};
        return session.render(between(0, 60), {number_ % 2 ? Depth::bits16 : Depth::bits8, scale, scale});
    }

  private:
    double between(double a, double b) { return std::uniform_real_distribution<double>(a, b)(dice_); }
    int pick(int choices) { return std::uniform_int_distribution<int>(0, choices - 1)(dice_); }

    unsigned number_;
    std::mt19937 dice_;
};

std::size_t digest(const Frame& frame) {
    const auto* bytes = reinterpret_cast<const char*>(frame.argb.data());
    return std::hash<std::string_view>()({bytes, frame.argb.size() * sizeof frame.argb[0]});
}

TEST(LongRun, ChangingScenesKeepNothingAndTheSameSceneGivesTheSameFrame) {
    const char* asked = std::getenv("ZAM_FRAMES");
    const int frames = asked ? std::max(1, std::atoi(asked)) : 300;
    std::vector<std::size_t> first(kScenes, 0);
    std::vector<unsigned> order(kScenes);
    for (unsigned i = 0; i < kScenes; ++i) order[i] = i;
    std::mt19937 shuffling(1);
    int black = 0;
    double warm = 0, most = 0;
    const auto start = std::chrono::steady_clock::now();
    std::optional<Running> running;
    for (int i = 0; i < frames; ++i) {
        if (i % kLifeFrames == 0) {
            if (running) {
                running->session.stop();
                EXPECT_EQ(running->session.reports(), std::vector<std::string>{});
            }
            running.emplace(make_composition(), SessionOptions{.threads = 3});
        }
        if (i % kScenes == 0) std::shuffle(order.begin(), order.end(), shuffling);
        const unsigned number = order[static_cast<std::size_t>(i % kScenes)];
        const Frame frame = Scene(number).render(running->comp, running->session);
        // Suites, handles, locks, streams: what a frame keeps of them is reported when it ends.
        ASSERT_TRUE(frame.outcome.ok()) << i << ::testing::PrintToString(frame.outcome.reports);
        black += is_black(frame);
        if (first[number] == 0) first[number] = digest(frame);
        ASSERT_EQ(digest(frame), first[number]) << "scene " << number << " at frame " << i;
        if (i == frames / 5) warm = resident_kib();
        most = std::max(most, resident_kib());
    }
    EXPECT_LT(black, frames / 2);
    const double end = resident_kib();
    const std::chrono::duration<double> spent = std::chrono::steady_clock::now() - start;
    std::printf(
        "%d frames of %d scenes in %.1f s: %d black; resident %.0f KiB after %d, %.0f at the end, %.0f at "
        "most\n",
        frames, kScenes, spent.count(), black, warm, frames / 5, end, most);
    EXPECT_LE(end - warm, kAllowedGrowthKib);
}

}  // namespace
}  // namespace zam::test
