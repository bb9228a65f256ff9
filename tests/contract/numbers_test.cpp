// Numbers far outside of sense, in seeded random scenes through the real plug-in file. Whatever a host answers, no byte
// outside of the frame's pixels is written, and every pixel gets a code: the same over any memory, on any number of
// threads and, but for decisions that hang by rounding, on every row target.
//
// ZAM_SCENES=200000 makes a long run, ZAM_FIRST_SCENE=1234 starts at that seed.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <random>
#include <sstream>

#include "tests/contract/odd_scenes.h"
#include "tests/contract/reference_scene.h"

namespace zam::test {
namespace {

// The plug-in once for each row target: a loaded file chooses one at its first row and keeps to it, so these are
// copies.
struct Target {
    std::string name;
    std::unique_ptr<Plugin> plugin;
};
void set_target(const std::string& name) {
#ifdef _WIN32
    _putenv_s("ZAM_TARGET", name.c_str());
#else
    setenv("ZAM_TARGET", name.c_str(), 1);
#endif
}
Frame take(const Shot& shot, const Plugin& plugin, SessionOptions options) {
    Composition comp = shot.comp;
    options.amend_in_data = shot.amend;
    Session session(plugin, comp, std::move(options));
    session.start();
    shot.apply(session);
    comp.width = shot.shown_width;
    comp.height = shot.shown_height;
    return session.render(0, shot.settings);
}
const std::vector<Target>& targets() {
    static const std::vector<Target> all = [] {
        std::vector<Target> made;
        std::istringstream names(ZAM_TARGET_NAMES);
        for (std::string name; names >> name;) {
            const auto copy =
                testing::TempDir() + "zam_" + std::to_string(std::random_device()()) + "_" + name;
            std::filesystem::copy_file(ZAM_PLUGIN_FILE, copy);
            set_target(name);
            made.push_back({name, std::make_unique<Plugin>(copy)});
            take(Shot(1, 1), *made.back().plugin, {});
            std::error_code stays;  // where loaded files cannot be removed
            std::filesystem::remove(copy, stays);
        }
        return made;
    }();
    return all;
}

struct Tally {
    long scenes = 0, lit = 0, channels = 0, off_by_one = 0, apart = 0, compared = 0, off = 0, wrong = 0;
};

// In a scene of such lights no colour is above full scale; of others it keeps its low bits.
bool has_plain_lights(const Composition& comp) {
    return std::all_of(comp.layers.begin(), comp.layers.end(), [](const Layer& layer) {
        const auto [r, g, b] = layer.light.color.constant;
        return layer.light.intensity.constant >= 0 && std::min({r, g, b}) >= 0 && std::max({r, g, b}) <= 1;
    });
}

// Premultiplied: a colour without alpha does not show.
void compare_with_reference(const Shot& shot, const Frame& frame, Tally& tally) {
    Composition comp = shot.comp;
    for (const auto& [index, value] : shot.controls) {
        std::string id = "#";
        id += std::to_string(Shot::table()[static_cast<std::size_t>(index - 1)].id);
        comp.effect.controls.push_back({id, {ControlValue(value)}, ""});
    }
    const auto slow = render_reference(comp, Shot::table(), 0, shot.settings).argb;
    ASSERT_EQ(slow.size(), frame.argb.size());
    for (std::size_t i = 0; i < slow.size(); ++i) {
        const auto shown = [&](const std::vector<std::uint16_t>& argb) {
            return i % 4 == 0 ? argb[i] : argb[i] * (argb[i / 4 * 4] / 32768.0);
        };
        const double off = std::abs(shown(slow) - shown(frame.argb));
        ++tally.compared;
        tally.off += off > 1;
        tally.wrong += off > 327;
    }
}

void try_scene(const Kind& kind, unsigned seed, Tally& tally) {
    SCOPED_TRACE(::testing::Message() << "scene " << seed << ", " << kind.name);
    const Shot shot = kind.make(seed);
    const RowLayout layout{static_cast<int>(seed / 9 % 3 * 500), seed / 9 % 2 == 1};
    const bool deep = shot.settings.depth == Depth::bits16, plain = has_plain_lights(shot.comp);
    Frame first;
    for (const Target& target : targets()) {
        Frame frame = take(shot, *target.plugin, {.threads = 1});
        const Frame again =
            take(shot, *target.plugin, {.threads = 3, .output_byte = 0x5A, .row_layout = layout});
        EXPECT_TRUE(frame.outcome.ok() && again.outcome.ok()) << target.name;
        EXPECT_EQ(frame.argb, again.argb) << target.name;
        if (first.argb.empty()) first = frame;
        int beyond = 0;  // full scale
        for (std::size_t i = 0; i < frame.argb.size(); ++i) {
            const int apart = std::abs(first.argb[i] - frame.argb[i]);
            tally.off_by_one += apart == 1;
            tally.apart += apart > 1;
            beyond += deep && (plain || i % 4 == 0) && frame.argb[i] > 32768;
        }
        EXPECT_EQ(beyond, 0) << target.name;
        tally.channels += static_cast<long>(frame.argb.size());
        if (kind.most_wrong < kNotCompared && &target == &targets().front())
            compare_with_reference(shot, frame, tally);
    }
    tally.lit += !is_black(first);
    ++tally.scenes;
}

TEST(Numbers, FarOutsideOfSenseStillMakeDefinedFrames) {
    const auto wanted = [](const char* name, unsigned usual) {
        const char* text = std::getenv(name);
        return text ? static_cast<unsigned>(std::strtoul(text, nullptr, 10)) : usual;
    };
    const unsigned first = wanted("ZAM_FIRST_SCENE", 0), scenes = wanted("ZAM_SCENES", 2700);
    const std::span<const Kind> kinds = odd_kinds();
    std::vector<Tally> tallies(kinds.size());
    for (unsigned seed = first; seed < first + scenes && !HasFailure(); ++seed)
        try_scene(kinds[seed % kinds.size()], seed, tallies[seed % kinds.size()]);
    std::cout << scenes << " scenes on " << targets().size() << " row targets\n"
              << "kind                 scenes    lit  channels  apart by 1   by more | compared  off by > 1  "
                 "by > 1 %\n";
    for (std::size_t k = 0; k < kinds.size(); ++k) {
        const Tally& t = tallies[k];
        std::printf("%-19s %7ld%7ld%10ld%12ld%10ld |%9ld%12ld%10ld\n", kinds[k].name, t.scenes, t.lit,
                    t.channels, t.off_by_one, t.apart, t.compared, t.off, t.wrong);
        EXPECT_LE(static_cast<double>(t.apart), 4 + kinds[k].most_apart * static_cast<double>(t.channels));
        EXPECT_LE(static_cast<double>(t.wrong), 4 + kinds[k].most_wrong * static_cast<double>(t.compared));
        EXPECT_TRUE(t.scenes < 200 || t.lit * 50 >= t.scenes) << kinds[k].name << " shows next to nothing";
    }
}

// A light with a number that is none, or so large that its products leave double precision, gives no light, and harms
// no other.
TEST(Numbers, LightsOutOfRangeGiveNone) {
    Shot sane(9, 5);
    add_camera(sane.comp, {}, {0, 0, 1}, 9);
    add_point(sane.comp, {0, 0, 40});
    add_spot(sane.comp, {0, -50, 40}, {0, 0, 40});
    const Frame expected = take(sane, zam_plugin(), {});
    EXPECT_FALSE(is_black(expected));
    for (const double bad : {std::nan(""), HUGE_VAL, -HUGE_VAL, 1e16, -1e300}) {
        const Vec3 aside{bad, 0, 40}, behind{0, 0, bad};
        const Matrix skewed{{{1, 0, 0, 0}, {0, 1, 0, 0}, {bad, 0, bad, 0}, {0, 0, 40, 1}}};
        const Color wrong{1, bad, 1};
        const std::function<void(Layer&)> harms[] = {
            [&](Layer& l) { l.transform.position = aside; },
            [&](Layer& l) { l.transform.position = behind; },
            [&](Layer& l) { l.world = skewed; },
            [&](Layer& l) { l.light.color = wrong; },
            [&](Layer& l) { l.light.intensity = 1e3 * bad; },
            [&](Layer& l) { l.light.cone_angle = 1e3 * bad; },
            [&](Layer& l) { l.light.cone_feather = 1e3 * bad; },
        };
        for (std::size_t harm = 0; harm < std::size(harms); ++harm) {
            for (const LightType type : {LightType::point, LightType::spot}) {
                if (type == LightType::point && (harm == 2 || harm > 4)) continue;  // of spots alone
                Shot shot = sane;
                Layer& layer = add_layer(shot.comp, LayerKind::light, "Bad", {0, 0, 40});
                layer.light.type = type;
                harms[harm](layer);
                EXPECT_EQ(take(shot, zam_plugin(), {}).argb, expected.argb) << bad << " " << harm;
            }
        }
    }
}

}  // namespace
}  // namespace zam::test
