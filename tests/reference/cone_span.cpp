#include "tests/reference/cone_span.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

#include "tests/reference/bisection.h"

namespace zam::reference {
namespace {

constexpr Real kFarLimit = 1e7;  // where a ray ends that meets no end cap
constexpr Real kTiny = 1e-5;     // the effect's threshold for "parallel" and "tangent"
constexpr Real kInfinity = std::numeric_limits<Real>::infinity();

Real smaller(Real a, Real b) { return b < a ? b : a; }
Real larger(Real a, Real b) { return b > a ? b : a; }

// The ray between the caps.  depth(t) = (t ray - apex) . axis grows by k per unit of t; the cone's body is
// where start * axis^2 <= depth <= reach * axis^2.
std::optional<Stretch> between_caps(const Vec3& ray, const SpotCone& spot) {
    const Real k = dot(ray, spot.axis);
    const Real apex_depth = dot(spot.axis, spot.apex);
    const Real axis_sq = dot(spot.axis, spot.axis);
    Stretch s{0, kFarLimit};

    // deliberate: a ray along the layer is not cut, whichever side it runs on; with k exactly 0 depth along the
    // view, not along the axis, decides
    if (!spot.ends_at_layer && k == 0 && dot(ray, spot.apex) > spot.reach) return std::nullopt;
    const Real rate = spot.ends_at_layer ? spot.side * dot(ray, spot.layer_normal) : k;
    const Real end = spot.ends_at_layer ? spot.side * dot(spot.layer_point, spot.layer_normal)
                                        : apex_depth + spot.reach * axis_sq;
    if (rate > 0) s.far = smaller(kFarLimit, end / rate);
    if (rate < 0 && end / rate > 0) s.near = end / rate;

    // deliberate: with k exactly 0 the start cap cuts nothing
    const Real start = (apex_depth + spot.start * axis_sq) / k;
    if (k > 0) s.near = larger(s.near, start);
    if (k < 0) s.far = smaller(s.far, start);

    if (s.near > s.far) return std::nullopt;
    return s;
}

// The whole line's stretch inside the forward cone, caps and camera left out of account; ends may be
// infinite.  Asks only for a ray that is neither parallel to the cone's surface nor close to its apex.
std::optional<Stretch> forward_stretch(const Vec3& ray, const SpotCone& spot, Real cos_half) {
    const auto cosine = [&](Real t) {
        const Vec3 q = t * ray - spot.apex;
        return dot(q, spot.axis) / length(q);
    };
    const auto inside = [&](Real t) { return cosine(t) >= cos_half; };
    const Passage pass = passage(ray, spot.apex);
    const Real width = pass.distance / length(ray);

    // The cone is convex, so the line is inside along one interval.  If one of the line's two directions
    // points into the cone, the interval goes on for ever that way and starts somewhere beyond the apex
    // plane.
    const Real along = dot(ray, spot.axis);
    if (std::fabs(along) >= cos_half * length(ray)) {
        const Real at_apex_plane = dot(spot.axis, spot.apex) / along;
        const auto outside = [&](Real t) { return !inside(t); };
        const Real entry = walk_out(outside, at_apex_plane, along > 0 ? width : -width);
        return along > 0 ? Stretch{entry, kInfinity} : Stretch{-kInfinity, entry};
    }

    // Otherwise both far ends are outside.  Seen from the apex the line sweeps half a turn, and over it the
    // cosine to the axis is a piece of a sine wave.  If it comes above both ends' values it has one summit
    // and falls to either side, so a search by thirds finds it.  The place v in (-1, 1) covers the line,
    // closely near the apex.
    const auto place = [&](Real v) { return pass.closest + width * v / (1 - v * v); };
    Real left = -1;
    Real right = 1;
    for (int i = 0; i < 120; ++i) {
        const Real third = (right - left) / 3;
        if (cosine(place(left + third)) < cosine(place(right - third))) {
            left += third;
        } else {
            right -= third;
        }
    }
    const Real summit = place((left + right) / 2);
    if (!inside(summit)) return std::nullopt;
    return Stretch{walk_out(inside, summit, -width), walk_out(inside, summit, width)};
}

Stretch in_front(Real near, Real far) { return {larger(near, 0), larger(far, 0)}; }

}  // namespace

Stretch cone_stretch(const Vec3& ray, const SpotCone& spot, Real cos_half) {
    const Stretch miss{0, 0};
    const std::optional<Stretch> caps = between_caps(ray, spot);
    if (!caps) return miss;
    const Real lo = caps->near;
    const Real hi = caps->far;
    const Stretch none = in_front(lo, 0);

    // form(q) >= 0 inside the double cone with its apex at the origin.  Along the ray form(t ray - apex) is
    // a t^2 + 2 b t + c, whose coefficients are read off form itself.
    const auto form = [&](const Vec3& q) {
        const Real depth = dot(q, spot.axis);
        return depth * depth - cos_half * cos_half * dot(q, q);
    };
    const Real a = form(ray);
    const Real c = form(spot.apex);
    const Real b = (form(ray - spot.apex) - a - c) / 2;
    const Real discriminant = b * b - a * c;
    const bool ahead = dot(ray, spot.axis) > 0;
    const auto beyond = [&](Real t) {  // the ray enters or leaves the cone at t, once
        return ahead ? in_front(larger(lo, t), hi) : in_front(lo, smaller(t, hi));
    };

    // deliberate: a ray that is nearly parallel to the cone's surface is taken to be exactly so
    if (std::fabs(a) <= kTiny) {
        if (std::fabs(b) <= kTiny) return std::fabs(c) < kTiny ? in_front(lo, hi) : none;
        const Real root = -c / (2 * b);
        if (dot(root * ray - spot.apex, spot.axis) <= 0) return miss;
        return beyond(root);
    }
    // deliberate: a ray that nearly touches the surface, or nearly meets the apex, is taken to do exactly
    // that; a point 100 further on tells which
    if (discriminant <= kTiny) {
        if (std::fabs(discriminant) >= kTiny) return none;
        const Real touch = -b / a;
        const Vec3 probe = (touch + 100) * ray - spot.apex;
        const Real depth = dot(probe, spot.axis);
        if (depth * depth / dot(probe, probe) <= cos_half * cos_half) return miss;
        return beyond(touch);
    }

    const std::optional<Stretch> inside = forward_stretch(ray, spot, cos_half);
    if (!inside) return in_front(lo, lo);
    return in_front(larger(lo, inside->near), smaller(hi, inside->far));
}

Stretch refined_stretch(const View& view, int px, int py, const SpotCone& spot, Real cos_half,
                        const Stretch& own) {
    const Real screen_sq = spot.axis.x * spot.axis.x + spot.axis.y * spot.axis.y;
    const Real screen_length = std::sqrt(screen_sq);
    // A ray beside the pixel, `step` times the axis' length on the screen across that axis.
    const auto across = [&](Real step, Real cos_of_cone) {
        const Vec3 ray = ray_through(view, px - spot.axis.y * step, py + spot.axis.x * step);
        return cone_stretch(ray, spot, cos_of_cone);
    };

    const Real wide = std::fabs(screen_sq) <= 1e-9 ? Real(1) : 0.6L / screen_length;
    const Stretch first = across(wide, cos_half);
    const Stretch second = across(-wide, cos_half);
    const int hits = (own.length() > 0) + (first.length() > 0) + (second.length() > 0);
    if (hits == 0) return own;
    if (hits == 3) {
        constexpr Real third = 0.333333333333333;  // deliberate: fifteen digits
        return {(own.near + first.near + second.near) * third, (own.far + first.far + second.far) * third};
    }

    // deliberate: the inner pair is cast at the inner cone, also when the outer cone is being smoothed
    const Real narrow = screen_sq == 0 ? Real(0) : 0.3L / screen_length;
    Stretch sum;
    int count = 0;
    for (const Stretch& s :
         {first, second, own, across(narrow, spot.cos_inner), across(-narrow, spot.cos_inner)}) {
        if (!(s.length() > 0)) continue;
        sum = {sum.near + s.near, sum.far + s.far};
        ++count;
    }
    const Stretch mean{sum.near / count, sum.far / count};
    const Real width = mean.length() * count / 5;
    const Real middle = (mean.near + mean.far) / 2;
    return {middle - width / 2, middle + width / 2};
}

}  // namespace zam::reference
