#pragma once
// A row on any lane type: included once by each file of a target (rows_scalar.cpp, rows_avx2.cpp ...), compiled for it.
// The pixel loop is inside the light loop, over blocks of a row; each pixel still adds its lights in array order.
#include "effect/render/kernels/point_lights.h"
#include "effect/render/kernels/spot_light.h"
#include "effect/render/render_data.h"
#include "effect/render/row_finish.h"
#include "effect/render/spans.h"

namespace zam {

//
// V is the lane type of points and of the finishing pass, S that of spots, whose formulas are long enough to keep a processor
// busy with fewer lanes.
template <class V, class S = V>
class RowRenderer {
  public:
    RowRenderer(const _RenderData& frame, A_long y) : frame_(frame), y_(y) {
        squared_ = SquaresLights(frame.look);
        dy_ = (y - frame.height * 0.5) * frame.invDownsampleY * frame.invZoom;
        spots_on_ = frame.spotData->count > 0 && SpotModel{frame.spotData->model} != SpotModel::off;
        if (spots_on_) {
            const int known = frame.spotData->count < kKnownColumns ? frame.spotData->count : kKnownColumns;
            for (int light = 0; light < known; ++light) spot_columns_[light] = SpotColumns(frame, light, y);
        }
    }

    void Render(PF_Pixel* out) {
        for (first_ = 0; first_ < frame_.width; first_ += kBlock) {
            count_ = frame_.width - first_ < kBlock ? frame_.width - first_ : kBlock;
            StartBlock();
            AddPointLights();
            if (spots_on_) AddSpotLights();
            if (frame_.deep) {
                WriteBlock<V, A_u_short>(frame_, sums_, count_, reinterpret_cast<PF_Pixel16*>(out) + first_);
            } else {
                WriteBlock<V, A_u_char>(frame_, sums_, count_, out + first_);
            }
        }
    }

  private:
    static constexpr int kLanes = LanesOf<V>::kCount;
    static constexpr int kBlock = RowSums::kBlock;
    static_assert(kBlock % kLanes == 0);
    static constexpr int kKnownColumns = 256;  // spot lights whose columns are kept for the whole row

    static V Load(const double* from) { return LanesOf<V>::Load(from); }

    // deliberate: through the pixel's top left corner, no half-pixel offset
    void StartBlock() {
        const V step = LanesOf<V>::Index();
        for (int i = 0; i < count_; i += kLanes) {
            const V x = step + V(static_cast<double>(first_ + i));
            const V dx = (x - frame_.width * 0.5) * frame_.aspectOverDownsampleX * frame_.invZoom;
            const V a = dx * dx + dy_ * dy_ + 1.0;
            Store(dx_ + i, dx);
            Store(a_ + i, a);
            Store(inv_root_a_ + i, ReciprocalRoot(a));
            const V zero(0.0);
            Store(sums_.red + i, zero);
            Store(sums_.green + i, zero);
            Store(sums_.blue + i, zero);
            Store(sums_.alpha + i, zero);
        }
    }

    // The block's share of a row's columns, in whole groups of lanes.
    struct Groups {
        int first, end;
    };
    Groups GroupsOf(const Columns& columns) const {
        const int first = columns.first > first_ ? columns.first - first_ : 0;
        const int end = columns.end - first_ < count_ ? columns.end - first_ : count_;
        return {first / kLanes * kLanes, end};
    }

    void Add(int i, V red, V green, V blue, V alpha) {
        Store(sums_.red + i, Load(sums_.red + i) + red);
        Store(sums_.green + i, Load(sums_.green + i) + green);
        Store(sums_.blue + i, Load(sums_.blue + i) + blue);
        Store(sums_.alpha + i, Load(sums_.alpha + i) + alpha);
    }
    // A light's strength and colour: `value` times each, squared where the look wants it.
    struct Tint {
        double red, green, blue, alpha;
    };
    Tint MakeTint(const Vec3& color, double intensity) const {
        const Tint t{color.x * intensity, color.y * intensity, color.z * intensity, intensity};
        return squared_ ? Tint{t.red * t.red, t.green * t.green, t.blue * t.blue, t.alpha * t.alpha} : t;
    }
    template <class L>
    void AddTinted(int i, L value, const Tint& tint, bool squared) {
        const L v = squared ? value * value : value;
        const auto add = [&](double* sums, double strength) {
            Store(sums + i, MulAdd(v, L(strength), LanesOf<L>::Load(sums + i)));
        };
        add(sums_.red, tint.red);
        add(sums_.green, tint.green);
        add(sums_.blue, tint.blue);
        add(sums_.alpha, tint.alpha);
    }

    // r.p along the row.
    struct RowDot {
        V x, rest;
        V operator()(V dx) const { return MulAdd(dx, x, rest); }
    };
    RowDot MakeRowDot(const Vec3& p) const { return {V(p.x), V(dy_ * p.y + p.z)}; }

    void AddPointLights() {
        const _LightData& data = *frame_.pointData;
        const PointSettings settings{PointModel{data.model}, data.softness, data.sourceRadius, frame_.softKSq,
                                     frame_.softKRoot};
        switch (settings.model) {
            case PointModel::natural:
                for (int light = 0; light < data.count; light += 2)
                    AddNaturalPoints(light, data.count, settings);
                break;
            case PointModel::radius:
            case PointModel::radius_source:
            case PointModel::source:
                for (int light = 0; light < data.count; ++light) {
                    AddSpheres(frame_.pointLights[light], frame_.optPoint[light], settings);
                }
                break;
            case PointModel::off:
                break;
        }
    }

    // Two lights at a time, to fetch and store the sums once for both; the last of an odd number alone.
    void AddNaturalPoints(int first, int count, const PointSettings& settings) {
        const auto far = [&](int light) {
            return 0.25 * frame_.optPoint[light].softDenominator > kFarSquare * settings.softKSq;
        };
        if (first + 1 == count) {
            far(first) ? AddNaturalPoints<true, 1>(first, settings)
                       : AddNaturalPoints<false, 1>(first, settings);
        } else if (far(first) || far(first + 1)) {
            AddNaturalPoints<true, 2>(first, settings);
        } else {
            AddNaturalPoints<false, 2>(first, settings);
        }
    }

    // Three short loops: within each, neighbouring lanes do not wait for one another.
    template <bool kFar, int kLights>
    void AddNaturalPoints(int first, const PointSettings& settings) {
        Tint tint[kLights];
        RowDot dot[kLights];
        _OptPointData opt[kLights];
        for (int n = 0; n < kLights; ++n) {
            const _VisLightStruct& light = frame_.pointLights[first + n];
            tint[n] = MakeTint(light.color, light.intensity * settings.softKRoot);
            dot[n] = MakeRowDot(light.pos);
            opt[n] = frame_.optPoint[first + n];
        }
        const bool squared = squared_;
        const int count = count_;
        for (int i = 0; i < count; i += kLanes) {
            const V dx = Load(dx_ + i), a = Load(a_ + i);
            for (int n = 0; n < kLights; ++n) {
                const V rho_sq = NaturalRhoSquare<kFar>(a, dot[n](dx), opt[n], settings);
                const V inv_rho = ReciprocalRoot(rho_sq);
                Store(inv_rho_[n] + i, inv_rho);
                Store(rho_[n] + i, rho_sq * inv_rho);
            }
        }
        for (int i = 0; i < count; i += kLanes) {
            const V dx = Load(dx_ + i);
            for (int n = 0; n < kLights; ++n)
                Store(quotient_[n] + i, AngleQuotient(Load(rho_[n] + i), dot[n](dx)));
        }
        for (int i = 0; i < count; i += kLanes) {
            const V dx = Load(dx_ + i);
            V red = Load(sums_.red + i), green = Load(sums_.green + i), blue = Load(sums_.blue + i),
              alpha = Load(sums_.alpha + i);
            for (int n = 0; n < kLights; ++n) {
                const V angle = AngleFromQuotient(Load(quotient_[n] + i), Load(rho_[n] + i), -dot[n](dx));
                const V glow = angle * Load(inv_rho_[n] + i);
                const V v = squared ? glow * glow : glow;
                red = MulAdd(v, V(tint[n].red), red);
                green = MulAdd(v, V(tint[n].green), green);
                blue = MulAdd(v, V(tint[n].blue), blue);
                alpha = MulAdd(v, V(tint[n].alpha), alpha);
            }
            Store(sums_.red + i, red);
            Store(sums_.green + i, green);
            Store(sums_.blue + i, blue);
            Store(sums_.alpha + i, alpha);
        }
    }

    void AddSpheres(const _VisLightStruct& light, const _OptPointData& opt, const PointSettings& settings) {
        const bool glows = settings.model != PointModel::source && light.radius > 0.0;
        const bool shines = settings.model != PointModel::radius && settings.sourceRadius > 0.0;
        double radius = glows ? light.radius : 0.0;
        if (shines && settings.sourceRadius > radius) radius = settings.sourceRadius;
        if (!(radius > 0.0)) return;
        const Groups groups = GroupsOf(SphereColumns(frame_, light.pos, radius, y_));
        const RowDot row_dot = MakeRowDot(light.pos);
        const bool soft = settings.softness > 0.0, squared = squared_;
        const double over = light.sourceIntensity / (2.0 * settings.sourceRadius);
        for (int i = groups.first; i < groups.end; i += kLanes) {
            const V a = Load(a_ + i), inv_root_a = Load(inv_root_a_ + i), inv_a = inv_root_a * inv_root_a;
            const V rp = row_dot(Load(dx_ + i));
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
            squared ? Add(i, red * red, green * green, blue * blue, alpha * alpha)
                    : Add(i, red, green, blue, alpha);
        }
    }

    void AddSpotLights() {
        const SpotFrame spots{*frame_.spotData,
                              {frame_.invZoom, frame_.aspectOverDownsampleX, frame_.invDownsampleY,
                               frame_.width, frame_.height},
                              frame_.spotScale};
        for (int light = 0; light < frame_.spotData->count; ++light) {
            const Groups groups =
                GroupsOf(light < kKnownColumns ? spot_columns_[light] : SpotColumns(frame_, light, y_));
            if (groups.end <= groups.first) continue;
            const bool feathered = frame_.spotLights[light].coneFeather > 0.0;
            switch (SpotModel{frame_.spotData->model}) {
                case SpotModel::natural:
                    feathered ? AddSpot<SpotModel::natural, true>(spots, light, groups)
                              : AddSpot<SpotModel::natural, false>(spots, light, groups);
                    break;
                case SpotModel::distance:
                    feathered ? AddSpot<SpotModel::distance, true>(spots, light, groups)
                              : AddSpot<SpotModel::distance, false>(spots, light, groups);
                    break;
                case SpotModel::constant:
                    feathered ? AddSpot<SpotModel::constant, true>(spots, light, groups)
                              : AddSpot<SpotModel::constant, false>(spots, light, groups);
                    break;
                case SpotModel::off:
                    break;
            }
        }
    }

    template <SpotModel kModel, bool kFeathered>
    void AddSpot(const SpotFrame& spots, int light, const Groups& groups) {
        // Copies: the compiler then knows that writing sums does not change them.
        const _VisLightStruct spot = frame_.spotLights[light];
        const _OptSpotData opt = frame_.optSpot[light];
        const Tint tint = MakeTint(spot.color, spot.intensity);
        const bool row_in_box = opt.screenTop < y_ && y_ < opt.screenBottom, squared = squared_;
        const S left(row_in_box ? opt.screenLeft : 1.0), right(row_in_box ? opt.screenRight : 0.0);
        for (int i = groups.first; i < groups.end; i += LanesOf<S>::kCount) {
            const auto load = [i](const double* from) { return LanesOf<S>::Load(from + i); };
            const S x = LanesOf<S>::Index() + S(static_cast<double>(first_ + i));
            const SpotRays<S> rays{x, S(y_), load(dx_), S(dy_), load(a_), load(inv_root_a_)};
            const S s = SpotScattering<kModel, kFeathered>(spots, spot, opt, rays, (left < x) & (x < right));
            AddTinted(i, at_least_zero(s), tint, squared);
        }
    }

    const _RenderData& frame_;
    A_long y_;
    double dy_;
    bool squared_, spots_on_;
    int first_ = 0, count_ = 0;  // of the block, pixels
    Columns spot_columns_[kKnownColumns];
    // Rays (dx, dy, 1) of the block with a = |ray|^2.
    alignas(64) double dx_[kBlock];
    alignas(64) double a_[kBlock];
    alignas(64) double inv_root_a_[kBlock];
    RowSums sums_;
    // Between the loops of a natural point light.
    alignas(64) double rho_[2][kBlock];
    alignas(64) double inv_rho_[2][kBlock];
    alignas(64) double quotient_[2][kBlock];
};

}  // namespace zam
