#include <gmock/gmock.h>

#include "host/runner/callbacks.h"
#include "tests/unit/host/suites/bench.h"

namespace zam::host {
namespace {

using ::testing::Each;

class ImagesTest : public Bench {
  protected:
    void prepare(int width, int height, bool deep, const RowLayout& layout = {}) {
        begin(PF_Cmd_RENDER, 0);
        in.output.prepare(width, height, deep, {1, 1}, kDirtyByte, layout);
        in.output_world = in.output.interface_world(true);
    }
    // The code of one channel at a pixel.
    int at(int x, int y, int channel) {
        const auto place = static_cast<std::size_t>((y * in.output.width() + x) * 4 + channel);
        return in.output.codes()[place];
    }
    const PF_UtilCallbacks utils = util_callbacks(true);
};

TEST_F(ImagesTest, FillKeepsToItsAreaAndUsesTheScaleOfTheDepth) {
    const PF_Pixel color{255, 0, 1, 128};
    const PF_Rect area{2, -5, 900, 2};  // clipped to the image
    for (const bool deep : {false, true}) {
        prepare(5, 4, deep, {.padding = deep ? 0 : 100, .bottom_up = deep});
        EXPECT_EQ(in.output_world.rowbytes, deep ? -40 : 120);
        EXPECT_EQ(utils.fill(effect_ref, &color, &area, &in.output_world), 0);
        const int dirty = deep ? 0xA5A5 : 0xA5;
        EXPECT_EQ(at(1, 0, 0), dirty);
        EXPECT_EQ(at(2, 2, 0), dirty);
        for (const auto& [x, y] : {std::pair{2, 0}, {4, 1}}) {
            EXPECT_EQ(at(x, y, 0), deep ? 32768 : 255);
            EXPECT_EQ(at(x, y, 1), 0);
            EXPECT_EQ(at(x, y, 2), deep ? 129 : 1);
            EXPECT_EQ(at(x, y, 3), deep ? 16448 : 128);
        }
        EXPECT_EQ(utils.fill(effect_ref, nullptr, nullptr, &in.output_world), 0);
        EXPECT_THAT(in.output.codes(), Each(0));
        in.output.check("output", in.ledger);  // no padding was touched
        EXPECT_TRUE(in.ledger.end().empty());
    }
}

PF_Err mark(void* visits, A_long x, A_long y, PF_Pixel* from, PF_Pixel* out) {
    ++*static_cast<std::atomic<int>*>(visits);
    out->red = static_cast<A_u_char>(10 * y + x);
    out->green = from ? 1 : 0;
    return PF_Err_NONE;
}

TEST_F(ImagesTest, IterateVisitsTheClippedAreaInTheImagesOwnPlaces) {
    prepare(5, 4, false);
    std::atomic<int> visits{0};
    const PF_Rect area{3, 1, 99, 99};
    EXPECT_EQ(utils.iterate(&in.in_data, 0, 4, nullptr, &area, &visits, mark, &in.output_world), 0);
    EXPECT_EQ(visits, 2 * 3);
    EXPECT_EQ(at(3, 1, 1), 13);
    EXPECT_EQ(at(4, 3, 1), 34);
    EXPECT_EQ(at(4, 3, 2), 0);  // without a source there is no pixel to read
    EXPECT_EQ(at(2, 1, 1), kDirtyByte);
    EXPECT_EQ(at(3, 0, 1), kDirtyByte);
}

PF_Err cancel(void*, A_long, A_long y, PF_Pixel*, PF_Pixel*) {
    return y == 2 ? PF_Interrupt_CANCEL : PF_Err_NONE;
}
PF_Err throw_int(void*, A_long, A_long, PF_Pixel*, PF_Pixel*) { throw 516; }

TEST_F(ImagesTest, IterateAnswersWhatARowAnswers) {
    prepare(5, 4, true);
    EXPECT_EQ(utils.iterate(&in.in_data, 0, 4, nullptr, nullptr, nullptr, cancel, &in.output_world), 517);
    EXPECT_TRUE(in.ledger.end().empty());
    prepare(5, 4, true);
    EXPECT_NE(utils.iterate(&in.in_data, 0, 4, nullptr, nullptr, nullptr, throw_int, &in.output_world), 0);
    EXPECT_EQ(in.ledger.end(), std::vector<std::string>{"a row threw the int 516 in iterate"});
}

}  // namespace
}  // namespace zam::host
