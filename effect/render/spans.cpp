#include "effect/render/spans.h"

#include <algorithm>
#include <cmath>

#include "effect/render/kernels/cone.h"

namespace zam {
namespace {

// Rays (dx, dy, 1) with from <= dx <= to; empty when from > to.
struct Span {
    double from, to;
};
constexpr Span kWholeRow{-1e300, 1e300}, kNothing{1.0, -1.0};

// Where q2 x^2 + q1 x + q0 >= 0, a little widened. Two half lines count as the whole row.
Span WhereNotNegative(double q2, double q1, double q0) {
    if (!(q2 < 0.0)) return kWholeRow;
    const double products = std::fabs(q2 * q0) * 4.0 + q1 * q1;
    const double discriminant = q1 * q1 - 4.0 * q2 * q0 + 1e-9 * products;  // what rounding may have taken
    if (discriminant < 0.0) return kNothing;
    if (!(discriminant < 1e300)) return kWholeRow;
    const double root = std::sqrt(discriminant);
    return {(root - q1) / (2.0 * q2), (-root - q1) / (2.0 * q2)};
}

Span Intersect(const Span& a, const Span& b) { return {std::max(a.from, b.from), std::min(a.to, b.to)}; }

double RayX(const _RenderData& frame, double x) {
    return (x - frame.width * 0.5) * frame.aspectOverDownsampleX * frame.invZoom;
}
double RayY(const _RenderData& frame, double y) {
    return (y - frame.height * 0.5) * frame.invDownsampleY * frame.invZoom;
}

// The columns of a span and one more on either side.
Columns ToColumns(const _RenderData& frame, const Span& span) {
    if (!(span.from <= span.to)) return {0, 0};
    const double per_column = frame.aspectOverDownsampleX * frame.invZoom;
    if (per_column == 0.0) return {0, frame.width};
    double from = span.from / per_column + frame.width * 0.5, to = span.to / per_column + frame.width * 0.5;
    if (from > to) std::swap(from, to);
    const double width = frame.width;
    return {static_cast<int>(std::clamp(std::floor(from) - 1.0, 0.0, width)),
            static_cast<int>(std::clamp(std::ceil(to) + 2.0, 0.0, width))};
}

// (r.c)^2 - r.r (c.c - R^2) >= 0
Span InSphere(const Vec3& c, double radius, double dy) {
    const double outside = dot(c, c) - radius * radius;
    if (!(outside > 0.0)) return kWholeRow;    // the camera is inside
    if (c.z + radius <= 0.0) return kNothing;  // all of it is behind
    const double rest = dy * c.y + c.z, a0 = dy * dy + 1.0;
    return WhereNotNegative(c.x * c.x - outside, 2.0 * c.x * rest, rest * rest - a0 * outside);
}

// B^2 - A C >= 0 for the widest cone of the light, with room for the thresholds of the intersection.
Span InDoubleCone(const _VisLightStruct& light, const _OptSpotData& opt, double dy) {
    const bool feathered = light.coneFeather > 0.0;
    const double cos_sq = feathered ? opt.cosOuterSq : opt.cosInnerSq;
    const double c = feathered ? opt.coneCOuter : opt.coneCInner;
    const Vec3 &p = light.pos, &d = light.dir;
    const double k0 = dy * d.y + d.z, r0 = dy * p.y + p.z, a0 = dy * dy + 1.0;
    const double b1 = cos_sq * p.x - d.x * opt.axisDotPos, b0 = cos_sq * r0 - k0 * opt.axisDotPos;
    const double margin = 2.0 * kConeEps * (1.0 + std::fabs(c));
    return WhereNotNegative(b1 * b1 - c * (d.x * d.x - cos_sq), 2.0 * (b1 * b0 - c * d.x * k0),
                            b0 * b0 - c * (k0 * k0 - cos_sq * a0) + margin);
}

// Is some pixel's ray exactly across the axis? There the caps cut nothing.
bool HasRayAcross(const _RenderData& frame, const Vec3& d, double dy) {
    const auto across = [&](double x) { return RayX(frame, x) * d.x + dy * d.y + 1.0 * d.z == 0.0; };
    const double per_column = d.x * frame.aspectOverDownsampleX * frame.invZoom;
    if (per_column == 0.0) return across(0.0);
    const double column = std::floor(frame.width * 0.5 - (dy * d.y + d.z) / per_column);
    return across(column - 1.0) || across(column) || across(column + 1.0) || across(column + 2.0);
}

}  // namespace

Columns SphereColumns(const _RenderData& frame, const Vec3& centre, double radius, A_long y) {
    return ToColumns(frame, InSphere(centre, radius, RayY(frame, y)));
}

Columns SpotColumns(const _RenderData& frame, int light, A_long y) {
    const _VisLightStruct& spot = frame.spotLights[light];
    const _OptSpotData& opt = frame.optSpot[light];
    const double dy = RayY(frame, y);
    Span span = kWholeRow;
    if (opt.boundRadius >= 0.0 && !HasRayAcross(frame, spot.dir, dy)) {
        span = InSphere(opt.boundCentre, opt.boundRadius, dy);
    }
    if (span.from <= span.to) span = Intersect(span, InDoubleCone(spot, opt, dy));
    Columns columns = ToColumns(frame, span);
    // Samples beside a pixel of the screen box may hit where its own ray does not.
    if (opt.screenTop < y && y < opt.screenBottom) {
        const int left = std::clamp(opt.screenLeft, 0, frame.width);
        const int right = std::clamp(opt.screenRight, 0, frame.width);
        if (left < right) {
            if (columns.end <= columns.first) columns = {left, right};
            columns = {std::min(columns.first, left), std::max(columns.end, right)};
        }
    }
    return columns;
}

}  // namespace zam
