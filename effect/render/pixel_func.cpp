#include "effect/render/pixel_func.h"

#include <algorithm>

#include "effect/render/host_maths.h"
#include "effect/render/kernels/look.h"
#include "effect/render/kernels/point_lights.h"
#include "effect/render/kernels/spot_light.h"
#include "effect/render/render_data.h"

namespace zam {
namespace {

using V = double;  // the lane type that the rows run on

// A row is rendered in blocks of this many pixels, so that what it needs fits the stack whatever the width.
constexpr int kBlock = 256;

// Sums of light of one block, and its rays (dx, dy, 1) with a = |ray|^2.
struct Block {
    int first = 0, count = 0;  // pixels
    double dy = 0.0;
    double dx[kBlock], a[kBlock];
    double red[kBlock], green[kBlock], blue[kBlock], alpha[kBlock];
};

void StartBlock(const _RenderData& frame, int first, A_long y, Block* block) {
    block->first = first;
    block->count = std::min(kBlock, frame.width - first);
    // deliberate: through the pixel's top left corner, no half-pixel offset
    block->dy = (y - frame.height * 0.5) * frame.invDownsampleY * frame.invZoom;
    for (int i = 0; i < block->count; ++i) {
        block->dx[i] = (first + i - frame.width * 0.5) * frame.aspectOverDownsampleX * frame.invZoom;
        block->a[i] = block->dx[i] * block->dx[i] + block->dy * block->dy + 1.0;
        block->red[i] = block->green[i] = block->blue[i] = block->alpha[i] = 0.0;
    }
}

void Add(Block* block, int i, Light4<V> light, bool squared) {
    if (squared) {
        light = {light.red * light.red, light.green * light.green, light.blue * light.blue,
                 light.alpha * light.alpha};
    }
    block->red[i] += light.red;
    block->green[i] += light.green;
    block->blue[i] += light.blue;
    block->alpha[i] += light.alpha;
}

void AddPointLights(const HostMaths& maths, const _RenderData& frame, Block* block) {
    const PointSettings settings{PointModel{frame.pointData->model}, frame.pointData->softness,
                                 frame.pointData->sourceRadius, frame.softKSq, frame.softKRoot};
    const bool squared = SquaresLights(frame.look);
    for (int light = 0; light < frame.pointData->count; ++light) {
        for (int i = 0; i < block->count; ++i) {
            Add(block, i,
                PointLight(maths, V(block->dx[i]), V(block->dy), V(block->a[i]), frame.pointLights[light],
                           frame.optPoint[light], settings),
                squared);
        }
    }
}

void AddSpotLights(const HostMaths& maths, const _RenderData& frame, A_long y, Block* block) {
    if (SpotModel{frame.spotData->model} == SpotModel::off) return;
    const SpotFrame spots{
        frame.spotData,       frame.spotLights, frame.optSpot, frame.invZoom,  frame.aspectOverDownsampleX,
        frame.invDownsampleY, frame.width,      frame.height,  frame.spotScale};
    const bool squared = SquaresLights(frame.look);
    for (int light = 0; light < frame.spotData->count; ++light) {
        const _VisLightStruct& spot = frame.spotLights[light];
        const _OptSpotData& opt = frame.optSpot[light];
        const bool row_in_box = opt.screenTop < y && y < opt.screenBottom;
        for (int i = 0; i < block->count; ++i) {
            const int x = block->first + i;
            const bool in_box = row_in_box && opt.screenLeft < x && x < opt.screenRight;
            const V s = SpotScattering(maths, spots, light, V(x), V(y), V(block->dx[i]), V(block->dy),
                                       V(block->a[i]), in_box);
            if (!(s > 0.0)) continue;
            Add(block, i,
                {s * spot.color.x * spot.intensity, s * spot.color.y * spot.intensity,
                 s * spot.color.z * spot.intensity, s * spot.intensity},
                squared);
        }
    }
}

// Straight colour with alpha; pixels without light keep what the frame was cleared to.
template <class Pixel, class Channel>
void WriteBlock(const HostMaths& maths, const _RenderData& frame, double full_scale, const Block& block,
                Pixel* row) {
    const auto shape = [&](double sum) { return ShapeByLook(maths, frame.look, frame.invGamma, sum); };
    for (int i = 0; i < block.count; ++i) {
        if (!(block.alpha[i] > 0.0)) continue;
        const double alpha = shape(block.alpha[i]);
        if (alpha == 0.0) continue;  // the power of a small gamma lost it
        const double k = 1.0 / alpha;
        Pixel& pixel = row[block.first + i];
        pixel.alpha = ChannelCode<Channel>(alpha, full_scale);
        pixel.red = ChannelCode<Channel>(shape(block.red[i]) * k, full_scale);
        pixel.green = ChannelCode<Channel>(shape(block.green[i]) * k, full_scale);
        pixel.blue = ChannelCode<Channel>(shape(block.blue[i]) * k, full_scale);
    }
}

}  // namespace

PF_Err PixelFunc(void* refcon, A_long, A_long y, PF_Pixel*, PF_Pixel* out) {
    const _RenderData& frame = *static_cast<const _RenderData*>(refcon);
    const HostMaths maths(frame.inData);
    Block block;
    for (int first = 0; first < frame.width; first += kBlock) {
        StartBlock(frame, first, y, &block);
        AddPointLights(maths, frame, &block);
        AddSpotLights(maths, frame, y, &block);
        if (frame.deep) {
            WriteBlock<PF_Pixel16, A_u_short>(maths, frame, PF_MAX_CHAN16, block,
                                              reinterpret_cast<PF_Pixel16*>(out));
        } else {
            WriteBlock<PF_Pixel, A_u_char>(maths, frame, PF_MAX_CHAN8, block, out);
        }
    }
    return PF_Err_NONE;
}

}  // namespace zam
