#pragma once
// The point lights of a block, on any lane type.
#include "effect/render/kernels/point_lights.h"
#include "effect/render/row_block.h"

namespace zam {

template <class V>
class PointRows {
  public:
    explicit PointRows(RowBlock<V>& block)
        : block_(block),
          settings_{PointModel{block.frame.pointData->model}, block.frame.pointData->softness,
                    block.frame.pointData->sourceRadius, block.frame.softKSq, block.frame.softKRoot} {}

    void Add() {
        const _RenderData& frame = block_.frame;
        const int count = frame.pointData->count;
        switch (settings_.model) {
            case PointModel::natural:
                for (int light = 0; light < count; light += 2) AddNatural(light, count);
                break;
            case PointModel::radius:
            case PointModel::radius_source:
            case PointModel::source:
                for (int light = 0; light < count; ++light)
                    AddSpheres(frame.pointLights[light], frame.optPoint[light]);
                break;
            case PointModel::off:
                break;
        }
    }

  private:
    static constexpr int kLanes = RowBlock<V>::kLanes, kSize = RowBlock<V>::kSize;

    // r.p along the row.
    struct RowDot {
        V x, rest;
        V operator()(V dx) const { return MulAdd(dx, x, rest); }
    };
    RowDot MakeRowDot(const Vec3& p) const { return {V(p.x), V(block_.dy * p.y + p.z)}; }

    // Two lights at a time, to fetch and store the sums once for both; the last of an odd number alone.
    void AddNatural(int first, int count) {
        const auto far = [&](int light) {
            return 0.25 * block_.frame.optPoint[light].softDenominator > kFarSquare * settings_.softKSq;
        };
        if (first + 1 == count) {
            far(first) ? AddNatural<true, 1>(first) : AddNatural<false, 1>(first);
        } else if (far(first) || far(first + 1)) {
            AddNatural<true, 2>(first);
        } else {
            AddNatural<false, 2>(first);
        }
    }

    // Three short loops: within each, neighbouring lanes do not wait for one another.
    template <bool kFar, int kLights>
    void AddNatural(int first) {
        RowBlock<V>& block = block_;
        const PointSettings settings = settings_;
        Tint tint[kLights];
        RowDot dot[kLights];
        _OptPointData opt[kLights];
        for (int n = 0; n < kLights; ++n) {
            const _VisLightStruct& light = block.frame.pointLights[first + n];
            tint[n] = block.MakeTint(light.color, light.intensity * settings.softKRoot);
            dot[n] = MakeRowDot(light.pos);
            opt[n] = block.frame.optPoint[first + n];
        }
        const bool squared = block.squared;
        const int count = block.count;
        for (int i = 0; i < count; i += kLanes) {
            const V dx = Load<V>(block.dx + i), a = Load<V>(block.a + i);
            for (int n = 0; n < kLights; ++n) {
                const V rho_sq = NaturalRhoSquare<kFar>(a, dot[n](dx), opt[n], settings);
                const V inv_rho = ReciprocalRoot(rho_sq);
                Store(inv_rho_[n] + i, inv_rho);
                Store(rho_[n] + i, rho_sq * inv_rho);
            }
        }
        for (int i = 0; i < count; i += kLanes) {
            const V dx = Load<V>(block.dx + i);
            for (int n = 0; n < kLights; ++n)
                Store(quotient_[n] + i, AngleQuotient(Load<V>(rho_[n] + i), dot[n](dx)));
        }
        for (int i = 0; i < count; i += kLanes) {
            const V dx = Load<V>(block.dx + i);
            V red = Load<V>(block.red + i), green = Load<V>(block.green + i), blue = Load<V>(block.blue + i),
              alpha = Load<V>(block.alpha + i);
            for (int n = 0; n < kLights; ++n) {
                const V angle =
                    AngleFromQuotient(Load<V>(quotient_[n] + i), Load<V>(rho_[n] + i), -dot[n](dx));
                const V glow = angle * Load<V>(inv_rho_[n] + i);
                const V v = squared ? glow * glow : glow;
                red = MulAdd(v, V(tint[n].red), red);
                green = MulAdd(v, V(tint[n].green), green);
                blue = MulAdd(v, V(tint[n].blue), blue);
                alpha = MulAdd(v, V(tint[n].alpha), alpha);
            }
            Store(block.red + i, red);
            Store(block.green + i, green);
            Store(block.blue + i, blue);
            Store(block.alpha + i, alpha);
        }
    }

    void AddSpheres(const _VisLightStruct& light, const _OptPointData& opt) {
        RowBlock<V>& block = block_;
        const PointSettings settings = settings_;
        const bool glows = settings.model != PointModel::source && light.radius > 0.0;
        const bool shines = settings.model != PointModel::radius && settings.sourceRadius > 0.0;
        double radius = glows ? light.radius : 0.0;
        if (shines && settings.sourceRadius > radius) radius = settings.sourceRadius;
        if (!(radius > 0.0)) return;
        const Groups groups = block.GroupsOf(SphereColumns(block.frame, light.pos, radius, block.y));
        const RowDot row_dot = MakeRowDot(light.pos);
        const bool soft = settings.softness > 0.0, squared = block.squared;
        const double over = light.sourceIntensity / (2.0 * settings.sourceRadius);
        for (int i = groups.first; i < groups.end; i += kLanes) {
            const V a = Load<V>(block.a + i), inv_root_a = Load<V>(block.inv_root_a + i);
            const V inv_a = inv_root_a * inv_root_a, rp = row_dot(Load<V>(block.dx + i));
            V red(0.0), green(0.0), blue(0.0), alpha(0.0);
            if (glows) {
                const V chord = ChordInSphere(a, inv_a, rp, opt.distSqMinusRadiusSq);
                const auto shaped = [&](double strength) {
                    const V v = chord * strength;
                    return soft ? SoftEdge(v, settings.softness) : v;
                };
                red = shaped(opt.colorOverDiameter.x);
                green = shaped(opt.colorOverDiameter.y);
                blue = shaped(opt.colorOverDiameter.z);
                alpha = shaped(opt.intensityOverDiameter);
            }
            if (shines) {
                const V chord = ChordInSphere(a, inv_a, rp, opt.distSqMinusSourceRadiusSq);
                red = MulAdd(chord, V(over * light.color.x), red);
                green = MulAdd(chord, V(over * light.color.y), green);
                blue = MulAdd(chord, V(over * light.color.z), blue);
                alpha = MulAdd(chord, V(over), alpha);
            }
            const auto add = [&](double* sum, V v) {
                Store(sum + i, Load<V>(sum + i) + (squared ? v * v : v));
            };
            add(block.red, red);
            add(block.green, green);
            add(block.blue, blue);
            add(block.alpha, alpha);
        }
    }

    RowBlock<V>& block_;
    const PointSettings settings_;
    // Between the loops of a natural light.
    alignas(64) double rho_[2][kSize];
    alignas(64) double inv_rho_[2][kSize];
    alignas(64) double quotient_[2][kSize];
};

}  // namespace zam
