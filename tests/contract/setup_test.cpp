// What it costs the host to set up a frame, counted: calls and allocations.
#include <cstdlib>
#include <map>
#include <new>

#include "tests/contract/zam_fixture.h"

namespace {

thread_local std::size_t allocations = 0;

}  // namespace

// Neither is inlined: a compiler that sees through one of the two warns that they do not match.
[[gnu::noinline]] void* operator new(std::size_t bytes) {
    ++allocations;
    if (void* block = std::malloc(bytes != 0 ? bytes : 1)) return block;
    throw std::bad_alloc();
}
[[gnu::noinline]] void operator delete(void* block) noexcept { std::free(block); }
[[gnu::noinline]] void operator delete(void* block, std::size_t) noexcept { std::free(block); }

namespace zam::test {
namespace {

Composition many_lights(int points, int spots) {
    Composition comp = make_composition();
    for (int i = 0; i < points; ++i) add_point(comp, {1.0 * i, 10, 40}, "A name too long for a short string");
    for (int i = 0; i < spots; ++i) add_spot(comp, {1.0 * i, 5, 20}, {10, 36, 30}, "Spot");
    return comp;
}

TEST(SetUp, WalksTheStackOncePerLightAndOncePerCount) {
    const auto count = [](int points, int spots) {
        Running running(many_lights(points, spots), {.record_calls = true});
        EXPECT_TRUE(running.render().outcome.ok());
        std::map<std::string, int> calls;
        for (const std::string& call : running.session.calls()) ++calls[call];
        const int lights = points + spots, layers = lights + 1, walks = lights + 2;
        EXPECT_EQ(calls["Layer.AEGP_GetCompNumLayers"], walks);
        EXPECT_EQ(calls["Layer.AEGP_GetCompLayerByIndex"], walks * layers);
        EXPECT_EQ(calls["Layer.AEGP_GetLayerObjectType"], walks * layers);
        EXPECT_EQ(calls["Light.AEGP_GetLightType"], walks * lights);
        return static_cast<int>(running.session.calls().size()) - walks * (2 * layers + lights);
    };
    // Beside these, every light costs the same few calls, suites and their return included.
    EXPECT_EQ(count(2, 1) - count(1, 1), 21);
    EXPECT_EQ(count(9, 1) - count(1, 1), 8 * 21);
    EXPECT_EQ(count(1, 2) - count(1, 1), 23);  // the cone's two streams
}

// Stands in for the host's iterate: what was allocated until then is the set-up's, what is allocated from then on the
// rows'.
std::size_t allocated_at_start = 0, allocated_by_setup = 0, allocated_by_rows = 0;
PF_UtilCallbacks utils_until_iterate;

PF_Err end_of_setup(PF_InData*, A_long, A_long, PF_EffectWorld*, const PF_Rect*, void* refcon,
                    PF_IteratePixel8Func render_row, PF_EffectWorld*) {
    allocated_by_setup = allocations - allocated_at_start;
    PF_Pixel row[64] = {};
    for (A_long y = 0; y < 36; ++y) render_row(refcon, 0, y, nullptr, row);
    allocated_by_rows = allocations - allocated_at_start - allocated_by_setup;
    return PF_Err_NONE;
}

TEST(SetUp, AllocatesNothingPerLightAndRowsNothingAtAll) {
    const auto count = [](int points, int spots) {
        Running running(many_lights(points, spots), {.amend_in_data = [](PF_InData& in_data) {
                            utils_until_iterate = *in_data.utils;
                            utils_until_iterate.iterate = end_of_setup;
                            in_data.utils = &utils_until_iterate;
                            allocated_at_start = allocations;
                        }});
        running.render();  // the first frame of a session may gather what later ones use
        allocated_by_setup = 0;
        EXPECT_TRUE(running.render().outcome.ok());
        EXPECT_EQ(allocated_by_rows, 0U);
        return allocated_by_setup;
    };
    const std::size_t few = count(2, 2);
    EXPECT_GT(few, 0U) << "the records' blocks at least";
    EXPECT_EQ(count(60, 50), few);
}

}  // namespace
}  // namespace zam::test
