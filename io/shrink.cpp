#include "io/shrink.h"

#include <algorithm>
#include <cmath>

namespace zam::io {
namespace {

// What one pixel of the small picture covers along a side: whole pixels of the frame, and how much of each.
struct Cover {
    int first = 0;
    std::vector<float> weights;  // their sum is 1
};

std::vector<Cover> covers(int from, int to) {
    std::vector<Cover> all(static_cast<std::size_t>(to));
    const double step = static_cast<double>(from) / to;
    for (int i = 0; i < to; ++i) {
        const double begin = i * step, end = (i + 1) * step;
        Cover& cover = all[static_cast<std::size_t>(i)];
        cover.first = std::min(static_cast<int>(begin), from - 1);
        for (int at = cover.first; at < from && (at < end - 1e-9 || at == cover.first); ++at)
            cover.weights.push_back(
                static_cast<float>((std::min<double>(end, at + 1) - std::max<double>(begin, at)) / step));
    }
    return all;
}

}  // namespace

host::Frame shrink(const host::Frame& frame, int width, int height) {
    host::Frame small;
    small.width = width;
    small.height = height;
    small.depth = frame.depth;
    small.argb.reserve(4 * static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    const std::vector<Cover> columns = covers(frame.width, width);
    const std::size_t row_codes = 4 * static_cast<std::size_t>(frame.width);
    std::vector<float> row(row_codes);  // the mean of the rows that one small row covers
    for (const Cover& rows : covers(frame.height, height)) {
        std::fill(row.begin(), row.end(), 0.0F);
        const std::uint16_t* from = frame.argb.data() + row_codes * static_cast<std::size_t>(rows.first);
        for (const float weight : rows.weights) {
            for (std::size_t i = 0; i < row_codes; ++i) row[i] += weight * static_cast<float>(from[i]);
            from += row_codes;
        }
        for (const Cover& column : columns)
            for (std::size_t channel = 0; channel < 4; ++channel) {
                float sum = 0.0F;
                std::size_t at = 4 * static_cast<std::size_t>(column.first) + channel;
                for (const float weight : column.weights) {
                    sum += weight * row[at];
                    at += 4;
                }
                small.argb.push_back(static_cast<std::uint16_t>(std::lround(sum)));
            }
    }
    return small;
}

}  // namespace zam::io
