#include "effect/render/spans.h"

#include <algorithm>
#include <cmath>

#include "effect/render/kernels/cone.h"

namespace zam {
namespace {

// Rays (dx, dy, 1) with from <= dx <= to; empty when from > to.
struct Span {
    double from, to;
    [[nodiscard]] bool empty() const { return !(from <= to); }
};
constexpr Span kWholeRow{-1e300, 1e300}, kNothing{1.0, -1.0};

Span Intersect(const Span& a, const Span& b) { return {std::max(a.from, b.from), std::min(a.to, b.to)}; }
Span Hull(const Span& a, const Span& b) {
    if (a.empty()) return b;
    if (b.empty()) return a;
    return {std::min(a.from, b.from), std::max(a.to, b.to)};
}

struct Quadratic {  // q2 x^2 + q1 x + q0
    double q2, q1, q0;
    double operator()(double x) const { return (q2 * x + q1) * x + q0; }
};

// Where a quadratic is at least -margin, a little widened: one span, or two half lines. `apart` says that it is clearly
// positive somewhere in each of them, and on a span that is the whole row everywhere.
struct Spans {
    Span left, right;
    bool apart;
};
Spans WhereAtLeast(const Quadratic& q, double margin) {
    const double products = std::fabs(q.q2) * (std::fabs(q.q0) + margin) * 4.0 + q.q1 * q.q1;
    const double room = 1e-9 * products;  // what rounding may have taken
    const double discriminant = q.q1 * q.q1 - 4.0 * q.q2 * (q.q0 + margin);
    const double of_positive = q.q1 * q.q1 - 4.0 * q.q2 * (q.q0 - margin);
    if (!(products < 1e300) || q.q2 == 0.0) return {kWholeRow, kNothing, false};
    if (q.q2 < 0.0) {
        if (discriminant + room < 0.0) return {kNothing, kNothing, false};
        const double root = std::sqrt(std::max(discriminant, 0.0) + room);
        return {{(root - q.q1) / (2.0 * q.q2), (-root - q.q1) / (2.0 * q.q2)}, kNothing, of_positive > room};
    }
    if (discriminant - room <= 0.0) return {kWholeRow, kNothing, of_positive + room < 0.0};
    const double root = std::sqrt(discriminant - room);
    return {
        {kWholeRow.from, (-q.q1 - root) / (2.0 * q.q2)}, {(-q.q1 + root) / (2.0 * q.q2), kWholeRow.to}, true};
}

// The columns of a span and one more on either side. Neighbouring columns have different rays: Render sees to that.
Columns ToColumns(const _RenderData& frame, const Span& span) {
    if (span.empty()) return {0, 0};
    const double per_column = frame.aspectOverDownsampleX * frame.invZoom;
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
    const Spans spans =
        WhereAtLeast({c.x * c.x - outside, 2.0 * c.x * rest, rest * rest - a0 * outside}, 0.0);
    return Hull(spans.left, spans.right);
}

// The double cone of a light along a row, as in cone.h: k = d.x dx + k0, A = k^2 - c r.r, B and D.
struct RowCone {
    double k1, k0, apex_depth;
    double b1, b0;
    Quadratic a, discriminant;
    double margin;  // of the discriminant, for the thresholds of the intersection

    RowCone(const _VisLightStruct& light, const _OptSpotData& opt, double dy) {
        const bool feathered = light.coneFeather > 0.0;
        const double cos_sq = feathered ? opt.cosOuterSq : opt.cosInnerSq;
        const double c = feathered ? opt.coneCOuter : opt.coneCInner;
        const double r0 = dy * light.pos.y + light.pos.z, a0 = dy * dy + 1.0;
        apex_depth = opt.axisDotPos;
        k1 = light.dir.x;
        k0 = dy * light.dir.y + light.dir.z;
        b1 = cos_sq * light.pos.x - k1 * apex_depth;
        b0 = cos_sq * r0 - k0 * apex_depth;
        a = {k1 * k1 - cos_sq, 2.0 * k1 * k0, k0 * k0 - cos_sq * a0};
        margin = 2.0 * kConeEps * (1.0 + std::fabs(c));
        discriminant = {b1 * b1 - c * a.q2, 2.0 * b1 * b0 - c * a.q1, b0 * b0 - c * a.q0};
    }

    // Are all rays of the span steeper than the cone's side, so that both roots are on one nappe?
    [[nodiscard]] bool IsSteep(const Span& span) const {
        const double limit = -1e-3;  // well clear of rays parallel to a generator
        if (!(a(span.from) < limit && a(span.to) < limit)) return false;
        const double top = a.q2 < 0.0 ? -a.q1 / (2.0 * a.q2) : span.from;
        return !(span.from < top && top < span.to) || a(top) < limit;
    }
    // Does the span meet nothing but the nappe behind the apex? Which nappe it is changes at the apex only, where the
    // discriminant is 0: not within a span in which it is clearly positive.
    [[nodiscard]] bool IsBehindApex(const Span& span) const {
        if (span.empty() || !IsSteep(span)) return false;
        const double x = 0.5 * (span.from + span.to), k = k1 * x + k0;
        const double depth = -(b1 * x + b0) / a(x) * k - apex_depth;
        return depth < -1e-6 * (1.0 + std::fabs(apex_depth));
    }
};

// Rays of `within`, a finite span, that the forward cone may be met by.
Span InCone(const RowCone& cone, const Span& within) {
    const Spans spans = WhereAtLeast(cone.discriminant, cone.margin);
    Span left = Intersect(spans.left, within), right = Intersect(spans.right, within);
    if (spans.apart && cone.IsBehindApex(left)) left = kNothing;
    if (spans.apart && cone.IsBehindApex(right)) right = kNothing;
    return Hull(left, right);
}

// Is some pixel's ray exactly across the axis? There the caps cut nothing.
bool HasRayAcross(const _RenderData& frame, const Vec3& d, double dy) {
    const auto across = [&](double x) { return RayDotAxis(RayX(frame.rays(), x), dy, 1.0, d) == 0.0; };
    const double per_column = d.x * frame.aspectOverDownsampleX * frame.invZoom;
    if (per_column == 0.0) return across(0.0);
    const double column = std::floor(frame.width * 0.5 - (dy * d.y + d.z) / per_column);
    return across(column - 1.0) || across(column) || across(column + 1.0) || across(column + 2.0);
}

}  // namespace

Columns SphereColumns(const _RenderData& frame, const Vec3& centre, double radius, A_long y) {
    return ToColumns(frame, InSphere(centre, radius, RayY<double>(frame.rays(), y)));
}

Columns SpotColumns(const _RenderData& frame, int light, A_long y) {
    const _VisLightStruct& spot = frame.spotLights[light];
    const _OptSpotData& opt = frame.optSpot[light];
    const PixelRays rays = frame.rays();
    const double dy = RayY<double>(rays, y);
    const double first = RayX(rays, 0.0), last = RayX<double>(rays, frame.width);
    Span span{std::min(first, last), std::max(first, last)};
    if (opt.boundRadius >= 0.0 && !HasRayAcross(frame, spot.dir, dy)) {
        span = Intersect(span, InSphere(opt.boundCentre, opt.boundRadius, dy));
    }
    if (!span.empty()) span = InCone(RowCone(spot, opt, dy), span);
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
