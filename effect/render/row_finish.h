#pragma once
// The end of a row: from sums of light to pixels.
#include <cstring>

#include "effect/render/row_block.h"

namespace zam {

// Whose whole part is the channel's code; that of 0 in lanes that another rule will write.
template <class Mask, class V>
[[gnu::always_inline]] inline V CodeOf(Mask usual, V value, double full) {
    return HalfUp(select(usual, value, V(0.0)), full);
}

// Straight colour with alpha; pixels without light keep what the frame was cleared to.
template <class V, class Channel, class Pixel>
void WriteBlock(const RowBlock<V>& block, Pixel* row) {
    constexpr int kLanes = RowBlock<V>::kLanes, kBits = 8 * sizeof(Channel);
    constexpr double kFull = kBits == 8 ? PF_MAX_CHAN8 : PF_MAX_CHAN16;
    const std::int32_t look = block.frame.look;
    const double inv_gamma = block.frame.invGamma;
    const int count = block.count;
    const V zero(0.0), one(1.0);
    for (int i = 0; i < count; i += kLanes) {
        const V sum = Load<V>(block.alpha + i);
        const auto has_light = sum > 0.0;
        if (!any(has_light)) continue;
        const auto shape = [&](const double* of) { return ShapeByLook(look, inv_gamma, Load<V>(of + i)); };
        const V alpha = ShapeByLook(look, inv_gamma, select(has_light, sum, one));
        // The power of a small gamma may have lost it; below the normal numbers it has no reciprocal.
        const auto lit = has_light & (alpha >= kLeastNormal);
        const V k = Reciprocal(select(lit, alpha, one));
        V values[4] = {alpha, shape(block.red) * k, shape(block.green) * k, shape(block.blue) * k};

        // Nearly always all are between 0 and full scale; the rest is left to the rules of ChannelCode.
        const V least = smaller(smaller(values[1], values[2]), values[3]);
        const V most = larger(larger(values[1], values[2]), values[3]);
        const V total = values[1] + values[2] + values[3];
        const auto usual = lit & (least >= 0.0) & (most < 1.00001) & (total == total);
        Pixel* pixels = row + i;
        std::uint64_t words[kLanes];
        StorePacked(words, CodeOf(usual, alpha, kFull), CodeOf(usual, values[1], kFull),
                    CodeOf(usual, values[2], kFull), CodeOf(usual, values[3], kFull), kBits);
        const int lanes = count - i < kLanes ? count - i : kLanes;
        if (lanes == kLanes && !any(!usual)) {
            for (int lane = 0; lane < kLanes; ++lane) std::memcpy(pixels + lane, &words[lane], sizeof(Pixel));
            continue;
        }
        double is_lit[kLanes], is_usual[kLanes], channels[4][kLanes];
        Store(is_lit, select(lit, one, zero));
        Store(is_usual, select(usual, one, zero));
        for (int c = 0; c < 4; ++c) Store(channels[c], values[c]);
        for (int lane = 0; lane < lanes; ++lane) {
            if (is_lit[lane] == 0.0) continue;
            if (is_usual[lane] != 0.0) {
                std::memcpy(pixels + lane, &words[lane], sizeof(Pixel));
            } else {
                pixels[lane] = {ChannelCode<Channel>(channels[0][lane], kFull),
                                ChannelCode<Channel>(channels[1][lane], kFull),
                                ChannelCode<Channel>(channels[2][lane], kFull),
                                ChannelCode<Channel>(channels[3][lane], kFull)};
            }
        }
    }
}

}  // namespace zam
