#include "effect/render/light_records.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <span>

#include "effect/scene/matrix.h"

namespace zam {
namespace {

Vec3 ToVec3(const double (&v)[3]) { return {v[0], v[1], v[2]}; }
Vec3 operator+(const Vec3& a, const Vec3& b) { return {a.x + b.x, a.y + b.y, a.z + b.z}; }
Vec3 operator-(const Vec3& a, const Vec3& b) { return {a.x - b.x, a.y - b.y, a.z - b.z}; }
Vec3 operator*(double s, const Vec3& v) { return {s * v.x, s * v.y, s * v.z}; }
Vec3 operator/(const Vec3& v, double s) { return {v.x / s, v.y / s, v.z / s}; }

double RadiusOf(const LightControls& controls, const LightDescription& light) {
    switch (controls.individual) {
        case Individual::intensity:
            return controls.radius * light.intensity;
        case Individual::shadow_darkness:
            return controls.radius * light.shadowDarkness;
        case Individual::shadow_diffusion:
            return controls.radius + light.shadowDiffusion;
        case Individual::none:
            break;
    }
    return controls.radius;
}

using DescribeLight = A_Err (*)(PF_InData*, A_long, A_u_long, LightDescription*, int, bool, bool,
                                const char*);

template <class Fill>
void ReadLights(PF_InData* in_data, int light_type, DescribeLight describe, const LightControls& controls,
                const LightFilters& filters, LightDescription* description,
                HostArray<_VisLightStruct>* lights, _LightData* settings, Fill fill_rest) {
    const int count = GetNoLights(in_data, light_type);
    if (count <= 0) {
        settings->model = kModelOff;
        return;
    }
    if (!lights->Allocate(static_cast<std::size_t>(count))) return;
    for (int index = 0; index < count; ++index) {
        describe(in_data, filters.time, filters.time_scale, description, index, filters.use_on,
                 filters.use_off, filters.prefix);
        const LightDescription& light = *description;
        const double own = controls.use_lights_intensity ? light.intensity : 1.0;
        _VisLightStruct& record = lights->get()[settings->count];
        record.pos = ToVec3(light.pos);
        record.color = ToVec3(light.color);
        record.intensity = controls.intensity * own;
        record.radius = RadiusOf(controls, light);
        fill_rest(light, own, &record);
        if (light.intensity != 0.0 && record.radius >= 0.0) ++settings->count;
    }
}

Vec3 Transform(const A_Matrix4& matrix, const Vec3& v) {
    const double in[4] = {v.x, v.y, v.z, 1.0};
    double out[4];
    TransformPoint4(in, &matrix, out);
    return {out[0], out[1], out[2]};
}

constexpr double kLargest = 1e15;
bool InRange(double v) { return v >= -kLargest && v <= kLargest; }  // false for a not-a-number
bool InRange(const Vec3& v) { return InRange(v.x) && InRange(v.y) && InRange(v.z); }

// Toward zero, held to the 32-bit range; a not-a-number becomes 0.
std::int32_t Truncate(double v) {
    constexpr double kMin = std::numeric_limits<std::int32_t>::min(),
                     kMax = std::numeric_limits<std::int32_t>::max();
    if (v != v) return 0;
    return static_cast<std::int32_t>(v < kMin ? kMin : v > kMax ? kMax : v);
}

// Where the light's cone gets smooth edges. deliberate: the box grows with the light's intensity, not with
// its cone, and that of an apex behind the camera is inside out
void SetScreenBox(const Projection& view, double spotScale, const _VisLightStruct& light, _OptSpotData* opt) {
    const Vec3& p = light.pos;
    double half = 0.0;
    opt->screenX = opt->screenY = 0.0;
    if (p.z != 0.0) {
        opt->screenX = view.width * 0.5 + view.downsample_x * p.x / p.z * view.zoom;
        opt->screenY = view.height * 0.5 + view.downsample_y * p.y / p.z * view.zoom;
        half = (spotScale * light.intensity - 1.0) * 0.5 / p.z * view.zoom * view.downsample_x;
    }
    opt->screenLeft = Truncate(opt->screenX + 0.5 - half);
    opt->screenRight = Truncate(opt->screenX + 0.5 + half);
    opt->screenTop = Truncate(opt->screenY + 0.5 - half);
    opt->screenBottom = Truncate(opt->screenY + 0.5 + half);
}

// What is derived from the cone's angles and axis.
void SetConeConstants(const HostMaths& maths, const _VisLightStruct& light, _OptSpotData* opt) {
    const double feather = opt->cosInner - opt->cosOuter;
    opt->invFeather = feather != 0.0 ? 1.0 / feather : 0.0;
    // deliberate: divided by the cone's opening, 200 for narrow cones and 400 tan for wide ones
    const double half = light.coneAngle * 0.5;
    const double wide = 400.0 * maths.tan(half), narrow = 200.0 * maths.cos(half);
    opt->invOpening = 1.0 / (narrow > wide ? narrow : wide);

    const double ax = light.dir.x, ay = light.dir.y, m = ax * ax + ay * ay;
    if (!(m > 0.0)) return;  // the axis points at the camera: nothing is across it
    const double root = maths.sqrt(m);
    opt->acrossX = -ay / root;
    opt->acrossY = ax / root;
    opt->firstOffset = m <= 1e-09 ? root : 0.6;
}

// A sphere around the cone between its apex and its reach. With a reach layer the cone has no end of its own, and one
// that opens to nearly half of space is not worth it.
void SetBound(const HostMaths& maths, bool reaches_layer, const _VisLightStruct& light, _OptSpotData* opt) {
    const double length = maths.sqrt(dot(light.dir, light.dir));
    const double cosine = (light.coneFeather > 0.0 ? opt->cosOuter : opt->cosInner) / length;
    if (reaches_layer || !(cosine > 0.05 && cosine < 1.0)) return;
    const double cos_sq = cosine * cosine, height = light.radius * length;
    // Through apex and rim, or, for wide cones, around the end cap.
    const bool narrow = cos_sq >= 0.5;
    const double radius = narrow ? height / (2.0 * cos_sq) : height * maths.sqrt(1.0 / cos_sq - 1.0);
    opt->boundCentre = light.pos + ((narrow ? radius : height) / length) * light.dir;
    opt->boundRadius = 1.001 * radius + 1.0;
    if (!(opt->boundRadius < 1e9)) opt->boundRadius = -1.0;
}

}  // namespace

void ReadPointLights(PF_InData* in_data, const LightControls& controls, const LightFilters& filters,
                     LightDescription* description, HostArray<_VisLightStruct>* lights,
                     _LightData* settings) {
    ReadLights(in_data, AEGP_LightType_POINT, GetPointLight, controls, filters, description, lights, settings,
               [&](const LightDescription&, double own, _VisLightStruct* record) {
                   record->sourceIntensity = controls.source_intensity * own;
               });
}

void ReadSpotLights(PF_InData* in_data, const LightControls& controls, const LightFilters& filters,
                    LightDescription* description, HostArray<_VisLightStruct>* lights, _LightData* settings) {
    ReadLights(in_data, AEGP_LightType_SPOT, GetSpotLight, controls, filters, description, lights, settings,
               [](const LightDescription& light, double, _VisLightStruct* record) {
                   record->dir = ToVec3(light.dir);
                   record->coneAngle = light.coneAngle;
                   record->coneFeather = light.coneFeather;
               });
}

void ToCameraSpace(const A_Matrix4& camera_from_world, const _LightData& settings, _VisLightStruct* lights) {
    for (_VisLightStruct& light : std::span(lights, static_cast<std::size_t>(settings.count))) {
        const Vec3 pos = Transform(camera_from_world, light.pos);
        light.dir = Transform(camera_from_world, light.pos + light.dir) - pos;  // deliberate: not normalised
        light.pos = pos;
    }
}

void KeepLightsInRange(_LightData* settings, _VisLightStruct* lights) {
    const auto out_of_range = [](const _VisLightStruct& light) {
        return !(InRange(light.pos) && InRange(light.dir) && InRange(light.color) &&
                 InRange(light.coneAngle) && InRange(light.coneFeather) && InRange(light.intensity) &&
                 InRange(light.sourceIntensity) && InRange(light.radius));
    };
    settings->count =
        static_cast<std::int32_t>(std::remove_if(lights, lights + settings->count, out_of_range) - lights);
}

void PreparePoints(const HostMaths& maths, double softKSq, const _LightData& settings,
                   const _VisLightStruct* lights, _OptPointData* opt) {
    for (int i = 0; i < settings.count; ++i) {
        const _VisLightStruct& light = lights[i];
        const double dist_sq = dot(light.pos, light.pos);
        const double diameter = 2.0 * light.radius;
        opt[i].distSqMinusRadiusSq = dist_sq - light.radius * light.radius;
        opt[i].distSqMinusSourceRadiusSq = dist_sq - settings.sourceRadius * settings.sourceRadius;
        opt[i].dist = maths.sqrt(dist_sq);
        opt[i].colorOverDiameter = (light.intensity * light.color) / diameter;
        opt[i].intensityOverDiameter = light.intensity / diameter;
        opt[i].softDenominator = 4.0 * (dist_sq + softKSq);
        opt[i].colorIntensity = light.intensity * light.color;
    }
}

void PrepareSpots(const HostMaths& maths, const Projection& projection, double spotScale,
                  const ReachPlane& reach, _LightData* settings, const _VisLightStruct* lights,
                  _OptSpotData* opt) {
    if (settings->reachActive) {
        const A_Matrix4& camera_from_world = projection.camera_from_world;
        const Vec3 point = Transform(camera_from_world, reach.point);
        const Vec3 normal = Transform(camera_from_world, reach.point + reach.direction) - point;
        settings->reachPoint = point;
        settings->reachNormal = normal / maths.sqrt(dot(normal, normal));
    }

    for (int i = 0; i < settings->count; ++i) {
        const _VisLightStruct& light = lights[i];
        const Vec3 &p = light.pos, &d = light.dir;

        _OptSpotData& o = opt[i];
        o.distSq = dot(p, p);
        o.dist = maths.sqrt(o.distSq);
        const double rounding = o.distSq * 0x1p-48;
        o.softening = rounding > 1.0 ? rounding : 1.0;
        o.cosOuter = maths.cos(light.coneAngle * 0.5);
        o.cosInner = maths.cos(light.coneAngle * 0.5 * (1.0 - light.coneFeather));
        o.cosOuterSq = o.cosOuter * o.cosOuter;
        o.cosInnerSq = o.cosInner * o.cosInner;
        o.axisDotPos = dot(d, p);
        o.coneCInner = o.axisDotPos * o.axisDotPos - o.cosInnerSq * o.distSq;
        o.coneCOuter = o.axisDotPos * o.axisDotPos - o.cosOuterSq * o.distSq;
        SetScreenBox(projection, spotScale, light, &o);
        SetConeConstants(maths, light, &o);
        SetBound(maths, settings->reachActive != 0, light, &o);

        o.startPlane = dot(d, p + settings->startDistance * d);
        if (!settings->reachActive) {
            o.endPlane = dot(d, p + light.radius * d);
        } else {
            const Vec3 &point = settings->reachPoint, &normal = settings->reachNormal;
            const bool behind = settings->reachBothSides && dot(point - p, normal) < 0.0;
            o.endSign = behind ? -1.0 : 1.0;
            o.endPlane = dot(normal, point) * o.endSign;
        }
    }
}

}  // namespace zam
