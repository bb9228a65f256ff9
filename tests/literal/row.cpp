// The pixels of one row, from the ray to the channel codes.
#include <algorithm>
#include <cstdint>

#include "effect/render/kernels/look.h"  // Look, the enumeration
#include "effect/render/render_data.h"
#include "tests/literal/formulas.h"
#include "tests/literal/literal_renderer.h"

namespace zam::literal {
namespace {

bool Squares(Look look) {
    return look == Look::weak || look == Look::natural || look == Look::adjustable_natural;
}

void Add(Light light, bool squared, Light* sum) {
    if (squared) {
        light = {light.red * light.red, light.green * light.green, light.blue * light.blue,
                 light.alpha * light.alpha};
    }
    sum->red += light.red;
    sum->green += light.green;
    sum->blue += light.blue;
    sum->alpha += light.alpha;
}

double FinalCurve(const Maths& maths, A_long look, double invGamma, double v) {
    if (look < 3) return std::min(v, 1.0);
    if (v > 1.0) return 1.0;
    return look <= 4 ? maths.sqrt(v) : maths.pow(v, invGamma);
}

// The low bits of the integer part of value * full_scale + 0.5; nothing for a not-a-number, the nearest end of
// the scale for what no 32-bit integer holds.
template <class Channel>
Channel Code(double value, double full_scale) {
    const double v = value * full_scale + 0.5;
    if (v != v || v <= -2147483649.0) return 0;
    if (v >= 2147483648.0) return static_cast<Channel>(full_scale);
    return static_cast<Channel>(static_cast<std::int32_t>(v));
}

template <class Pixel, class Channel>
void Write(const Maths& maths, const _RenderData& frame, double full_scale, const Light& sum, Pixel* pixel) {
    if (!(sum.alpha > 0.0)) return;
    const auto shaped = [&](double v) { return FinalCurve(maths, frame.look, frame.invGamma, v); };
    const double A = shaped(sum.alpha), R = shaped(sum.red), G = shaped(sum.green), B = shaped(sum.blue);
    if (A == 0.0) return;
    const double k = 1.0 / A;
    pixel->alpha = Code<Channel>(A, full_scale);
    pixel->red = Code<Channel>(R * k, full_scale);
    pixel->green = Code<Channel>(G * k, full_scale);
    pixel->blue = Code<Channel>(B * k, full_scale);
}

}  // namespace

PF_Err PixelFunc(void* refcon, A_long, A_long y, PF_Pixel*, PF_Pixel* out) {
    const _RenderData& frame = *static_cast<const _RenderData*>(refcon);
    const Maths& maths = frame.inData->utils->ansi;
    const _LightData &points = *frame.pointData, &spots = *frame.spotData;
    const PointConstants constants{frame.softKSq, frame.softKRoot};
    const View view{frame.invZoom, frame.aspectOverDownsampleX, frame.invDownsampleY, frame.width,
                    frame.height};
    const bool squared = Squares(Look{frame.look});
    RayOpt ray_opt;

    for (int x = 0; x < frame.width; ++x) {
        const Ray ray = RayThrough(view, x, y);
        Light sum;
        for (int i = 0; i < points.count; ++i) {
            Add(PointLight(maths, ray, frame.pointLights[i], frame.optPoint[i], points, constants), squared,
                &sum);
        }
        if (SpotModel{spots.model} != SpotModel::off) {
            for (int j = 0; j < spots.count; ++j) {
                const _VisLightStruct& light = frame.spotLights[j];
                const double S = SpotScattering(maths, view, spots, light, frame.optSpot[j], frame.spotScale,
                                                x, y, ray, &ray_opt);
                if (!(S > 0.0)) continue;
                Add({S * light.color.x * light.intensity, S * light.color.y * light.intensity,
                     S * light.color.z * light.intensity, S * light.intensity},
                    squared, &sum);
            }
        }

        if (frame.deep) {
            Write<PF_Pixel16, A_u_short>(maths, frame, PF_MAX_CHAN16, sum,
                                         reinterpret_cast<PF_Pixel16*>(out) + x);
        } else {
            Write<PF_Pixel, A_u_char>(maths, frame, PF_MAX_CHAN8, sum, out + x);
        }
    }
    return PF_Err_NONE;
}

}  // namespace zam::literal
