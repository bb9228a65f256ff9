// Antiderivatives F of the fog along a ray; every function returns F(t1) - F(t0).
//
//   Q(t)   a t^2 + b t + p.p + 1, squared distance from the light, softened; Q0(t) without the 1
//   u      p.p + 1
//   dp     d.p
#include "tests/literal/formulas.h"

namespace zam::literal {

// 1 / Q:  F = 2 i atan((2 a t + b) i)
double IntegrateNatural(const Maths& maths, const _OptSpotData& opt, const RayOpt& ray_opt, const Ray& ray,
                        double t0, double t1) {
    const double a = ray.square;
    const double b = ray_opt.rayDotPos * -2.0;
    const double i = 1.0 / maths.sqrt((opt.distSq + 1.0) * a * 4.0 - b * b);
    const auto F = [&](double t) { return 2.0 * i * maths.atan((2.0 * a * t + b) * i); };
    return F(t1) - F(t0);
}

// w / Q:  F = [((E - b k t - 2 a dp t) * -2) / (D sqrt(Q)) + atan((2 a t + b) i) (-2 cosOuter) i] /
//             (cosInner - cosOuter),   E = -2 u k - b dp
double IntegrateNaturalConeF(const Maths& maths, const _OptSpotData& opt, const RayOpt& ray_opt,
                             const Ray& ray, double t0, double t1) {
    const double a = ray.square;
    const double b = ray_opt.rayDotPos * -2.0;
    const double k = ray_opt.rayDotAxis;
    const double u = opt.distSq + 1.0, dp = opt.axisDotPos;
    const double D = -4.0 * a * u + b * b;
    const double i = 1.0 / maths.sqrt(-D);
    const double E = -2.0 * u * k - b * dp;
    const auto F = [&](double t) {
        const double Q = a * t * t + b * t + opt.distSq + 1.0;
        const double rational = ((E - b * k * t - 2.0 * a * dp * t) * -2.0) / (D * maths.sqrt(Q));
        const double angular = maths.atan((2.0 * a * t + b) * i) * (-2.0 * opt.cosOuter) * i;
        return (rational + angular) / (opt.cosInner - opt.cosOuter);
    };
    return F(t1) - F(t0);
}

// 1 / sqrt(Q):  F = log((b + 2 a t) / sqrt(a) + 2 sqrt(Q)) / sqrt(a)
double IntegrateDistance(const Maths& maths, const _OptSpotData& opt, const RayOpt& ray_opt, const Ray& ray,
                         double t0, double t1) {
    const double a = ray.square;
    const double b = ray_opt.rayDotPos * -2.0;
    const double root_a = maths.sqrt(a), i = 1.0 / root_a;
    const auto F = [&](double t) {
        const double Q = a * t * t + b * t + opt.distSq + 1.0;
        return i * maths.log((b + 2.0 * a * t) / root_a + 2.0 * maths.sqrt(Q));
    };
    return F(t1) - F(t0);
}

// w / sqrt(Q):  F = [G i atan((b + 2 a t) i) + k log(Q) + H log(2 sqrt(Q) + (b + 2 a t) / sqrt(a))] / N
double IntegrateDistanceConeF(const Maths& maths, const _OptSpotData& opt, const RayOpt& ray_opt,
                              const Ray& ray, double t0, double t1) {
    const double a = ray.square;
    const double b = ray_opt.rayDotPos * -2.0;
    const double k = ray_opt.rayDotAxis;
    const double u = opt.distSq + 1.0;
    const double i = 1.0 / maths.sqrt(a * 4.0 * u - b * b);
    const double root_a = maths.sqrt(a);
    const double G = -2.0 * (b * k + 2.0 * a * opt.axisDotPos);
    const double H = -2.0 * opt.cosOuter * root_a;
    const double N = 2.0 * a * (opt.cosInner - opt.cosOuter);
    const auto F = [&](double t) {
        const double Q = a * t * t + b * t + opt.distSq + 1.0;
        return (G * i * maths.atan((b + 2.0 * a * t) * i) + k * maths.log(Q) +
                H * maths.log(2.0 * maths.sqrt(Q) + (b + 2.0 * a * t) / root_a)) /
               N;
    };
    return F(t1) - F(t0);
}

// 1
double IntegrateConst(const Maths&, const _OptSpotData&, const RayOpt&, const Ray&, double t0, double t1) {
    return t1 - t0;
}

// w with the true distance:
//   F = [cosOuter t - (1 / a) k sqrt(Q0) + M log((2 a t + b) i + 2 sqrt(Q0)) / L] / (cosOuter - cosInner)
// Through the apex rounding may leave Q0 below zero and the logarithm without an argument: that term is dropped.
double IntegrateConstConeF(const Maths& maths, const _OptSpotData& opt, const RayOpt& ray_opt, const Ray& ray,
                           double t0, double t1) {
    const double a = ray.square;
    const double b = ray_opt.rayDotPos * -2.0;
    const double k = ray_opt.rayDotAxis;
    const double root_a = maths.sqrt(a), i = 1.0 / root_a;
    const double M = b * k + a * -2.0 * -opt.axisDotPos;
    const double L = 2.0 * a * root_a;
    const auto F = [&](double t) {
        double Q0 = a * t * t + b * t + opt.distSq;
        if (!(Q0 > 0.0)) Q0 = 0.0;
        const double root_q = maths.sqrt(Q0);
        const double argument = (2.0 * a * t + b) * i + 2.0 * root_q;
        double sum = opt.cosOuter * t - (1.0 / a) * k * root_q;
        if (argument > 0.0) sum += M * maths.log(argument) / L;
        return sum / (opt.cosOuter - opt.cosInner);
    };
    return F(t1) - F(t0);
}

}  // namespace zam::literal
