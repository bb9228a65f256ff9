// The stretch of a ray inside a spot's cone, and its smoothing at the cone's silhouette.
#include <algorithm>
#include <cmath>

#include "tests/literal/formulas.h"

namespace zam::literal {
namespace {

constexpr double kFarthest = 10000000.0;
constexpr double kEps = 1e-05;

// Between the end cap (or the reach plane) and the camera; false when the ray misses.
bool EndCap(const _LightData& spots, const _VisLightStruct& light, const _OptSpotData& opt,
            const RayOpt& ray_opt, const Ray& ray, double* lo, double* hi) {
    const double k = ray_opt.rayDotAxis;
    *lo = 0.0;
    *hi = kFarthest;
    if (std::isnan(k)) return false;
    if (spots.reachActive == 0) {
        const double e = opt.endPlane * ray_opt.invRayDotAxis;
        if (k > 0.0) {
            *hi = e;
            if (e >= kFarthest || std::isnan(e)) *hi = kFarthest;
        } else if (k < 0.0) {
            if (e > 0.0) *lo = e;
        } else if (ray_opt.rayDotPos > light.radius) {
            return false;
        }
    } else {
        const Vec3& n = spots.reachNormal;
        const double dn = (ray.x * n.x + ray.y * n.y + ray.z * n.z) * opt.endSign;
        const double e = opt.endPlane / dn;
        if (dn > 0.0) {
            *hi = e;
            if (e >= kFarthest || std::isnan(e)) *hi = kFarthest;
        } else if (dn < 0.0 && e > 0.0) {
            *lo = e;
        }
    }
    return true;
}

// (t r - p).d: not negative on the forward nappe.
double BeyondApex(const _VisLightStruct& light, const Ray& ray, double t) {
    return (t * ray.x - light.pos.x) * light.dir.x + (t * ray.y - light.pos.y) * light.dir.y +
           (t * ray.z - light.pos.z) * light.dir.z;
}

// From a single root on when the ray runs along the axis, else up to it.
Stretch FromOrTo(double root, double k, double lo, double hi) {
    if (k > 0.0) return {std::max(lo, root), hi};
    return {lo, std::min(root, hi)};
}

// The ray touches the cone, or passes its apex: is the point 100 beyond the double root outside?
bool ProbeIsOutside(const _VisLightStruct& light, const Ray& ray, double root, double cosSq) {
    const double t = root + 100.0;
    const double qx = t * ray.x - light.pos.x, qy = t * ray.y - light.pos.y, qz = t * ray.z - light.pos.z;
    const double qd = qx * light.dir.x + qy * light.dir.y + qz * light.dir.z;
    return qd * qd / (qx * qx + qy * qy + qz * qz) <= cosSq;
}

}  // namespace

Stretch IntersectRayWithCone(const Maths& maths, const _LightData& spots, const _VisLightStruct& light,
                             const _OptSpotData& opt, const RayOpt& ray_opt, const Ray& ray, double coneC,
                             double cosSq) {
    const Stretch miss{0.0, 0.0};
    double lo, hi;
    if (!EndCap(spots, light, opt, ray_opt, ray, &lo, &hi)) return miss;

    const double k = ray_opt.rayDotAxis;
    const double s = opt.startPlane * ray_opt.invRayDotAxis;
    if (k > 0.0) {
        lo = std::max(lo, s);
    } else if (k < 0.0) {
        hi = std::min(hi, s);
    }
    if (lo > hi) return miss;

    // On the cone where A t^2 + 2 B t + C = 0.
    const double A = k * k - cosSq * ray.square;
    const double B = cosSq * ray_opt.rayDotPos - k * opt.axisDotPos;
    const double C = coneC;
    const Stretch nothing{std::max(lo, 0.0), 0.0};
    Stretch result;
    if (maths.fabs(A) <= kEps) {  // parallel to a generator
        if (maths.fabs(B) <= kEps) {
            result = maths.fabs(C) < kEps ? Stretch{lo, hi} : nothing;
        } else {
            const double t0 = C * -0.5 / B;
            if (BeyondApex(light, ray, t0) <= 0.0) return miss;
            result = FromOrTo(t0, k, lo, hi);
        }
    } else {
        const double D = B * B - A * C;
        if (D <= kEps && maths.fabs(D) >= kEps) {
            result = nothing;
        } else if (maths.fabs(D) < kEps) {
            const double t1 = -B * (1.0 / A);
            if (ProbeIsOutside(light, ray, t1, cosSq)) return miss;
            result = FromOrTo(t1, k, lo, hi);
        } else if (D > kEps) {
            const double w = maths.sqrt(D), inv_a = 1.0 / A;
            const double ta = (-B - w) * inv_a, tb = (w - B) * inv_a;
            const bool fa = BeyondApex(light, ray, ta) >= 0.0, fb = BeyondApex(light, ray, tb) >= 0.0;
            if (fa && fb) {
                result = {std::max(lo, std::min(ta, tb)), std::min(hi, std::max(ta, tb))};
            } else if (fa) {
                result = FromOrTo(ta, k, lo, hi);
            } else if (fb) {
                result = FromOrTo(tb, k, lo, hi);
            } else {
                result = {lo, lo};
            }
        }
    }
    // Nothing behind the camera.
    return {result.near > 0.0 ? result.near : 0.0, result.far > 0.0 ? result.far : 0.0};
}

Stretch RefineIntersection(const Maths& maths, const View& view, const _LightData& spots,
                           const _VisLightStruct& light, const _OptSpotData& opt, Stretch own, double px,
                           double py, double coneC, double cosSq) {
    const auto cast = [&](double ox, double oy, double c, double cos_sq) {
        const Ray ray = RayThrough(view, px + ox, py + oy);
        RayOpt ray_opt;
        ray_opt.rayDotAxis = ray.x * light.dir.x + ray.y * light.dir.y + ray.z * light.dir.z;
        ray_opt.invRayDotAxis = 1.0 / ray_opt.rayDotAxis;
        ray_opt.rayDotPos = ray.x * light.pos.x + ray.y * light.pos.y + ray.z * light.pos.z;
        return IntersectRayWithCone(maths, spots, light, opt, ray_opt, ray, c, cos_sq);
    };

    // Offsets stand across the axis as seen on the screen.
    const double ax = light.dir.x, ay = light.dir.y;
    const double m = ax * ax + ay * ay;
    const double f = maths.fabs(m) > 1e-09 || std::isnan(m) ? 0.6 / maths.sqrt(m) : 1.0;
    const Stretch s1 = cast(-ay * f, ax * f, coneC, cosSq);
    const Stretch s2 = cast(ay * f, -ax * f, coneC, cosSq);
    const int hits = own.hit() + s1.hit() + s2.hit();
    if (hits == 3) {
        return {(own.near + s1.near + s2.near) * 0.333333333333333,
                (own.far + s1.far + s2.far) * 0.333333333333333};
    }
    if (hits == 0) return own;

    double near = 0.0, far = 0.0;
    int n = 0;
    // The inner cone for the last two, whatever cone the caller asked for.
    const double g = m == 0.0 ? 1.0 : 0.3 / maths.sqrt(m);
    for (const Stretch& sample : {s1, s2, own, cast(-ay * g, ax * g, opt.coneCInner, opt.cosInnerSq),
                                  cast(ay * g, -ax * g, opt.coneCInner, opt.cosInnerSq)}) {
        if (!sample.hit()) continue;
        near += sample.near;
        far += sample.far;
        ++n;
    }
    if (n > 1) {
        near /= n;
        far /= n;
    }
    const double width = (far - near) * n * 0.2;
    const double mid = (far + near) * 0.5;
    return {mid - width * 0.5, mid + width * 0.5};
}

}  // namespace zam::literal
