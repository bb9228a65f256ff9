#pragma once
// The spot lights of a block, on any lane type.
#include "effect/render/kernels/spot_light.h"
#include "effect/render/row_block.h"

namespace zam {

// V is the lane type of the block, S that of the spots' formulas, which are long enough to keep a processor busy with
// fewer lanes.
template <class V, class S>
class SpotRows {
  public:
    explicit SpotRows(RowBlock<V>& block)
        : block_(block),
          spots_{*block.frame.spotData, block.frame.rays(), block.frame.spotScale},
          model_(block.frame.spotData->count > 0 ? SpotModel{block.frame.spotData->model} : SpotModel::off) {
        if (model_ == SpotModel::off) return;
        const int count = spots_.settings.count, known = count < kKnownColumns ? count : kKnownColumns;
        for (int light = 0; light < known; ++light)
            columns_[light] = SpotColumns(block.frame, light, block.y);
    }

    void Add() {
        if (model_ == SpotModel::off) return;
        for (int light = 0; light < spots_.settings.count; ++light) {
            const Groups groups = block_.GroupsOf(
                light < kKnownColumns ? columns_[light] : SpotColumns(block_.frame, light, block_.y));
            if (groups.end <= groups.first) continue;
            const bool feathered = block_.frame.spotLights[light].coneFeather > 0.0;
            switch (model_) {
                case SpotModel::natural:
                    feathered ? AddSpot<SpotModel::natural, true>(light, groups)
                              : AddSpot<SpotModel::natural, false>(light, groups);
                    break;
                case SpotModel::distance:
                    feathered ? AddSpot<SpotModel::distance, true>(light, groups)
                              : AddSpot<SpotModel::distance, false>(light, groups);
                    break;
                case SpotModel::constant:
                    feathered ? AddSpot<SpotModel::constant, true>(light, groups)
                              : AddSpot<SpotModel::constant, false>(light, groups);
                    break;
                case SpotModel::off:
                    break;
            }
        }
    }

  private:
    static constexpr int kLanes = LanesOf<S>::kCount, kSize = RowBlock<V>::kSize;
    static constexpr int kKnownColumns = 256;  // lights whose columns are kept for the whole row

    // Two loops, so that the lanes of one group need not wait for those before: where the rays are in the cones, and
    // what they gather there.
    template <SpotModel kModel, bool kFeathered>
    void AddSpot(int light, const Groups& groups) {
        // Copies: the compiler then knows that writing sums does not change them.
        RowBlock<V>& block = block_;
        const _VisLightStruct spot = block.frame.spotLights[light];
        const _OptSpotData opt = block.frame.optSpot[light];
        const bool row_in_box = opt.screenTop < block.y && block.y < opt.screenBottom;
        const S left(row_in_box ? opt.screenLeft : 1.0), right(row_in_box ? opt.screenRight : 0.0);
        for (int i = groups.first; i < groups.end; i += kLanes) {
            const S x = LanesOf<S>::Index() + S(static_cast<double>(block.first + i));
            const SpotRays<S> rays{x, S(block.y), Load<S>(block.dx + i), S(block.dy), Load<S>(block.a + i)};
            const _RayOpt<S> products = MakeRayOpt(rays.dx, rays.dy, S(1.0), spot);
            const ConeStretches<S> s =
                StretchesOf<kModel, kFeathered>(spots_, spot, opt, rays, products, (left < x) & (x < right));
            Store(k_ + i, products.rayDotAxis);
            Store(rp_ + i, products.rayDotPos);
            Store(t_in_ + i, s.t_in);
            Store(t_out_ + i, s.t_out);
            if constexpr (kFeathered) {
                Store(f_in_ + i, s.f_in);
                Store(f_out_ + i, s.f_out);
            }
        }
        const Tint tint = block.MakeTint(spot.color, spot.intensity);
        const bool squared = block.squared;
        for (int i = groups.first; i < groups.end; i += kLanes) {
            ConeStretches<S> s{Load<S>(t_in_ + i), Load<S>(t_out_ + i), S(0.0), S(0.0)};
            if constexpr (kFeathered) {
                s.f_in = Load<S>(f_in_ + i);
                s.f_out = Load<S>(f_out_ + i);
            }
            if (!any((s.t_out > s.t_in) | (s.f_out > s.f_in))) continue;
            const FogRay<S> ray =
                MakeFogRay(Load<S>(block.a + i), Load<S>(block.inv_root_a + i), Load<S>(k_ + i),
                           Load<S>(rp_ + i), opt, kModel == SpotModel::constant ? 0.0 : opt.softening);
            const S sum = at_least_zero(SpotScattering<kModel, kFeathered>(spots_, opt, ray, s));
            const S value = squared ? sum * sum : sum;
            const auto add = [&](double* to, double strength) {
                Store(to + i, MulAdd(value, S(strength), Load<S>(to + i)));
            };
            add(block.red, tint.red);
            add(block.green, tint.green);
            add(block.blue, tint.blue);
            add(block.alpha, tint.alpha);
        }
    }

    RowBlock<V>& block_;
    const SpotFrame spots_;
    const SpotModel model_;
    Columns columns_[kKnownColumns];
    // Between the loops of a light: r.d, r.p and the stretches.
    alignas(64) double k_[kSize];
    alignas(64) double rp_[kSize];
    alignas(64) double t_in_[kSize];
    alignas(64) double t_out_[kSize];
    alignas(64) double f_in_[kSize];
    alignas(64) double f_out_[kSize];
};

}  // namespace zam
