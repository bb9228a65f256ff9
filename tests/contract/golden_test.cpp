// Small frames against the slow reference renderer's, kept as pictures in tests/golden.
#include <cstdlib>
#include <filesystem>

#include "io/images/png_reader.h"
#include "io/images/write_image.h"
#include "io/read_scene.h"
#include "tests/contract/reference_scene.h"
#include "tests/contract/zam_fixture.h"

namespace zam::test {
namespace {

struct Golden {
    const char* scene;
    double frame;
    Depth depth;
    Ratio across, down;  // the resolution

    [[nodiscard]] RenderSettings settings() const { return {depth, across, down}; }
    [[nodiscard]] std::string file() const {
        return "tests/golden/" + std::string(scene) + "." + std::to_string(static_cast<int>(frame)) +
               (across.den > 1 ? ".low" : "") + ".png";
    }
};

std::vector<Golden> goldens() {
    std::vector<Golden> all;
    const auto add = [&](const char* scene, int frames) {
        for (int frame = 0; frame < frames; ++frame)
            all.push_back({scene, static_cast<double>(frame), Depth::bits16, {}, {}});
    };
    add("points", 6);
    add("spots", 6);
    add("reach", 4);
    add("axis_across", 3);
    add("default_view", 1);
    all.push_back({"spots", 0, Depth::bits8, {}, {}});
    all.push_back({"spots", 0, Depth::bits16, {1, 3}, {1, 2}});
    all.push_back({"points", 3, Depth::bits8, {1, 2}, {1, 2}});
    return all;
}

Frame to_frame(const reference::Frame& frame) {
    Frame picture;
    picture.width = frame.width;
    picture.height = frame.height;
    picture.depth = frame.deep ? Depth::bits16 : Depth::bits8;
    picture.argb = frame.argb;
    return picture;
}

// Every channel within one code; says where not.
void expect_same_picture(const std::vector<std::uint16_t>& got, const std::vector<std::uint16_t>& expected,
                         int width, const std::string& what) {
    ASSERT_EQ(got.size(), expected.size()) << what;
    int off = 0;
    for (std::size_t i = 0; i < got.size(); ++i) {
        if (std::abs(got[i] - expected[i]) <= 1) continue;
        if (++off > 5) continue;
        const auto pixel = static_cast<int>(i / 4);
        ADD_FAILURE() << what << ": pixel (" << pixel % width << ", " << pixel / width << ") "
                      << "ARGB"[i % 4] << ": got " << got[i] << ", expected " << expected[i];
    }
    EXPECT_EQ(off, 0) << what << ": channels of " << got.size() << " more than one code off";
}

TEST(Golden, FramesAreTheReferenceRenderers) {
    const char* accept =
        std::getenv("ZAM_ACCEPT_GOLDEN");  // rewrite the pictures from the reference renderer
    for (const Golden& golden : goldens()) {
        const std::string scene = "tests/golden/" + std::string(golden.scene) + ".json";
        const Composition comp = io::read_scene(scene, {}).composition;
        Running running(comp);
        running.session.apply_settings(comp.effect);
        const int picker = running.index_of("Set Reach Layer");
        if (const double wall = running.session.control_at(picker, 0); wall != 0.0)
            running.session.choose_layer(picker, static_cast<LayerId>(wall), 0);
        const Frame frame = running.render(golden.frame, golden.settings());
        EXPECT_TRUE(frame.outcome.ok()) << golden.file();
        EXPECT_FALSE(is_black(frame)) << golden.file();
        const reference::Frame slow =
            render_reference(comp, running.session.controls(), golden.frame, golden.settings());
        expect_same_picture(frame.argb, slow.argb, frame.width, golden.file());
        if (golden.depth != Depth::bits16) continue;
        if (accept)
            io::write_image(golden.file(), to_frame(slow),
                            {static_cast<int>(golden.frame), comp.frame_rate, comp.pixel_aspect,
                             "the slow reference renderer", golden.scene},
                            {.bits = 16});
        expect_same_picture(frame.argb, io::PngReader(golden.file()).read(Depth::bits16).argb, frame.width,
                            golden.file() + " as kept");
    }
}

}  // namespace
}  // namespace zam::test
