// Point lights: glows, glow spheres and source balls.
#include "tests/literal/formulas.h"

namespace zam::literal {
namespace {

constexpr double kHalfTurn = 3.141592653589793;

// The part of the ray inside a sphere, cut at the camera; false on a miss and on a touch. A sphere without size
// is never hit, whatever rounding makes of D.
bool ChordInSphere(const Maths& maths, double a, double b, double distSqMinusRadiusSq, double radius,
                   double* chord) {
    if (!(radius > 0.0)) return false;
    const double D = b * b - 4.0 * a * distSqMinusRadiusSq;
    if (!(D > 0.0)) return false;
    const double q = maths.sqrt(D);
    double t_far = (q - b) * (0.5 / a);
    double t_near = (-b - q) * (0.5 / a);
    if (t_far < 0.0) t_far = 0.0;
    if (t_near < 0.0) t_near = 0.0;
    *chord = maths.fabs(t_near - t_far);
    return true;
}

double SoftEdge(const Maths& maths, double v, double softness) {
    if (!(v < 1.0)) return v;
    const double s = 1.0 - maths.sqrt(1.0 - v * v);
    return s * s * (3.0 - 2.0 * s) * softness + (1.0 - softness) * v;
}

}  // namespace

Light PointLight(const Maths& maths, const Ray& ray, const _VisLightStruct& light, const _OptPointData& opt,
                 const _LightData& points, const PointConstants& constants) {
    Light sum;
    const PointModel model{points.model};
    const double a = ray.square;
    const double b = -2.0 * (ray.x * light.pos.x + ray.y * light.pos.y + light.pos.z);

    if (model == PointModel::natural) {
        double D = a * opt.softDenominator - b * b;
        if (!(D > 0.0)) D = 4.0 * constants.softKSq * a;  // lost to rounding some 1e8 px away
        const double r = maths.sqrt(D);
        const double G = (kHalfTurn - 2.0 * maths.atan(b / r)) / r * constants.softKRoot;
        sum = {G * opt.colorIntensity.x, G * opt.colorIntensity.y, G * opt.colorIntensity.z,
               G * light.intensity};
    }

    double chord = 0.0;
    if (model == PointModel::radius || model == PointModel::radius_source) {
        if (ChordInSphere(maths, a, b, opt.distSqMinusRadiusSq, light.radius, &chord)) {
            sum = {chord * opt.colorOverDiameter.x, chord * opt.colorOverDiameter.y,
                   chord * opt.colorOverDiameter.z, chord * opt.intensityOverDiameter};
            if (points.softness > 0.0) {
                sum = {SoftEdge(maths, sum.red, points.softness), SoftEdge(maths, sum.green, points.softness),
                       SoftEdge(maths, sum.blue, points.softness),
                       SoftEdge(maths, sum.alpha, points.softness)};
            }
        }
    }
    if (model == PointModel::radius_source || model == PointModel::source) {
        if (ChordInSphere(maths, a, b, opt.distSqMinusSourceRadiusSq, points.sourceRadius, &chord)) {
            const double w = 2.0 * points.sourceRadius;
            sum.red += light.sourceIntensity * light.color.x / w * chord;
            sum.green += light.sourceIntensity * light.color.y / w * chord;
            sum.blue += light.sourceIntensity * light.color.z / w * chord;
            sum.alpha += light.sourceIntensity / w * chord;
        }
    }
    return sum;
}

}  // namespace zam::literal
