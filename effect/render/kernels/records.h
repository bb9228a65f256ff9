#pragma once
// Per-light records, in camera space: the camera at the origin looking along +z, one unit = one composition
// pixel. Arrays of them are flat and indexed alike; a light's index is the same in all parallel arrays.
// Written once per frame, only read while rows are rendered.
#include <cstdint>

namespace zam {

struct Vec3 {
    double x = 0.0, y = 0.0, z = 0.0;
};
inline double dot(const Vec3& a, const Vec3& b) { return a.x * b.x + a.y * b.y + a.z * b.z; }

enum class PointModel : std::int32_t { off = 1, natural, radius, radius_source, source };
enum class SpotModel : std::int32_t { off = 1, natural, distance, constant };

// One light that takes part.
struct _VisLightStruct {
    Vec3 pos;                      // world space when filled, camera space before rows are rendered
    Vec3 dir;                      // spots: axis, not normalised; moves to camera space with pos
    Vec3 color;                    // red, green, blue; fractions
    double coneAngle = 0.0;        // spots: full angle, radians
    double coneFeather = 0.0;      // spots: 0 to 1
    double intensity = 0.0;        // of the glow or cone, all factors in it
    double sourceIntensity = 0.0;  // points: of the source ball
    double radius = 0.0;           // points: of the glow; spots: the reach
};

// Settings of one kind of light. Points use the first four fields, spots all but softness and sourceRadius.
struct _LightData {
    std::int32_t count = 0;
    std::int32_t model = 1;  // a PointModel or SpotModel
    double softness = 0.0;   // 0 to 1
    double sourceRadius = 0.0;
    double startDistance = 0.0;
    Vec3 reachPoint;   // a point of the reach layer
    Vec3 reachNormal;  // its unit normal
    std::int32_t reachActive = 0;
    std::int32_t reachBothSides = 0;
};

// What the cone formulas need of one spot light; p = pos, d = dir.
struct _OptSpotData {
    double cosOuter = 0.0, cosOuterSq = 0.0;  // of half the cone angle
    double cosInner = 0.0, cosInnerSq = 0.0;  // of the half angle less the feather
    double distSq = 0.0, dist = 0.0;          // p.p and its root
    double softening = 1.0;   // added to squared distances; more than rounding takes from those of far lights
    double axisDotPos = 0.0;  // d.p
    double coneCOuter = 0.0,
           coneCInner = 0.0;  // (d.p)^2 - cos^2 * p.p, the constant term of each cone's quadratic
    // Where the cone's edge is refined, in pixels; empty (left right of right) for an apex behind the camera.
    std::int32_t screenLeft = 0, screenTop = 0, screenRight = 0, screenBottom = 0;
    double screenX = 0.0, screenY = 0.0;  // the apex in pixels
    double startPlane = 0.0;              // the start cap is the plane d.x = startPlane
    double endPlane = 0.0;  // the end cap: d.x, or (n.x) * endSign with the reach layer's normal n
    double endSign = 0.0;   // +1 or -1, with a reach layer

    // Derived further, so that no pixel divides for it.
    double invFeather = 0.0;  // 1 / (cosInner - cosOuter); 0 without a feather
    double invOpening = 0.0;  // of the constant model: 1 / max(400 tan(half angle), 200 cos(half angle))
    double acrossX = 0.0, acrossY = 0.0;  // unit vector across the axis as seen on the screen; 0 for none
    double firstOffset = 0.0;             // of the edge's first samples, pixels
    Vec3 boundCentre;                     // a sphere around all that the light can fill ...
    double boundRadius = -1.0;            // ... or none: negative
};

// What the glow formulas need of one point light; p = pos, R = radius, I = intensity.
struct _OptPointData {
    double distSqMinusRadiusSq = 0.0;        // p.p - R^2
    double distSqMinusSourceRadiusSq = 0.0;  // p.p - sourceRadius^2
    double dist = 0.0;                       // |p|
    Vec3 colorOverDiameter;                  // color * I / (2R)
    double intensityOverDiameter = 0.0;      // I / (2R)
    double softDenominator = 0.0;            // 4 * (p.p + softK^2)
    Vec3 colorIntensity;                     // color * I
};

// One view ray x(t) = t * r against one spot light.
template <class V>
struct _RayOpt {
    V rayDotAxis;     // k = r.d
    V invRayDotAxis;  // 1 / k; means nothing where k is exactly 0
    V rayDotPos;      // r.p
};

}  // namespace zam
