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
    int frame;
    Depth depth;
    Ratio across, down;  // the resolution

    [[nodiscard]] RenderSettings settings() const { return {depth, across, down}; }
    [[nodiscard]] std::string file() const {
        return "tests/golden/" + std::string(scene) + "." + std::to_string(frame) +
               (across.den > 1 ? ".low" : "") + ".png";
    }
};

std::vector<Golden> goldens() {
    std::vector<Golden> all;
    for (const auto& [scene, frames] :
         {std::pair{"points", 6}, {"spots", 6}, {"reach", 4}, {"axis_across", 3}, {"default_view", 1}}) {
        for (int frame = 0; frame < frames; ++frame) all.push_back({scene, frame, Depth::bits16, {}, {}});
    }
    all.push_back({"spots", 0, Depth::bits8, {}, {}});
    all.push_back({"spots", 0, Depth::bits16, {1, 3}, {1, 2}});
    all.push_back({"points", 3, Depth::bits8, {1, 2}, {1, 2}});
    return all;
}

// Every channel within one code.
void expect_same_picture(const Frame& got, const Frame& expected, const std::string& what) {
    ASSERT_EQ(got.argb.size(), expected.argb.size()) << what;
    std::size_t off = 0, first = 0;
    for (std::size_t i = got.argb.size(); i-- > 0;) {
        if (std::abs(got.argb[i] - expected.argb[i]) <= 1) continue;
        ++off;
        first = i;
    }
    const auto width = static_cast<std::size_t>(got.width), pixel = first / 4;
    EXPECT_EQ(off, 0U) << what << ": channels more than one code off, the first "
                       << "ARGB"[first % 4] << " of pixel (" << pixel % width << ", " << pixel / width
                       << "): got " << got.argb[first] << ", expected " << expected.argb[first];
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
        const Frame slow =
            render_reference(comp, running.session.controls(), golden.frame, golden.settings());
        expect_same_picture(frame, slow, golden.file());
        if (golden.depth != Depth::bits16) continue;
        if (accept)
            io::write_image(golden.file(), slow,
                            {golden.frame, comp.frame_rate, comp.pixel_aspect, "the slow reference renderer",
                             golden.scene},
                            {.bits = 16});
        expect_same_picture(frame, io::PngReader(golden.file()).read(Depth::bits16),
                            golden.file() + " as kept");
    }
}

}  // namespace
}  // namespace zam::test
