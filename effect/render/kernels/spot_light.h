#pragma once
// A spot light's scattering value S along view rays: its cone's stretches and the chosen model's integrals.
#include "effect/render/kernels/cone.h"
#include "effect/render/kernels/refine.h"
#include "effect/render/kernels/spot_integrals.h"

namespace zam {

// What all pixels of a frame share of one spot light.
struct SpotFrame {
    _LightData settings;
    PixelRays rays;
    double spotScale = 0.0;  // strength of the natural model
};

// Pixels (x, y) and their rays (dx, dy, 1).
template <class V>
struct SpotRays {
    V x, y, dx, dy;
    V a, inv_root_a;  // r.r, and 1 / sqrt(r.r)
};

template <class V>
struct ConeStretches {
    V t_in, t_out;  // inside the inner cone
    V f_in, f_out;  // inside the outer cone; with a feather only
};

template <class Mask, class V>
[[gnu::always_inline]] inline FogEnd<V> select_end(Mask mask, const FogEnd<V>& a, const FogEnd<V>& b) {
    return {select(mask, a.t, b.t), select(mask, a.v, b.v), select(mask, a.s2, b.s2)};
}

// A light as SumOfPieces takes it: an end of a stretch with what the model wants to know of it, the integral in the inner
// cone and the one in the feather.
template <class V>
struct NaturalLight {
    struct End {
        FogEnd<V> at;
        V rational;
    };
    NaturalFog<V> fog;
    const _OptSpotData& cone;

    [[gnu::always_inline]] FogEnd<V> at(V t) const { return MakeFogEnd(fog.ray, t); }
    [[gnu::always_inline]] V main_of(const FogEnd<V>& from, const FogEnd<V>& to) const {
        return fog.IntegrateNatural(from, to);
    }
    [[gnu::always_inline]] End for_feather(const FogEnd<V>& end) const { return {end, fog.Rational(end)}; }
    [[gnu::always_inline]] V feather_of(const End& from, const End& to) const {
        return fog.IntegrateNaturalConeF(cone, from.at, from.rational, to.at, to.rational);
    }
    template <class Mask>
    [[gnu::always_inline]] static End choose(Mask mask, const End& a, const End& b) {
        return {select_end(mask, a.at, b.at), select(mask, a.rational, b.rational)};
    }
};

// The distance and constant models, whose ends have logarithms.
template <class V, class Fog>
struct LogarithmicLight {
    struct End {
        FogEnd<V> at;
        LogEnd<V> log;
    };
    Fog fog;
    const _OptSpotData& cone;

    [[gnu::always_inline]] FogEnd<V> at(V t) const { return MakeFogEnd(fog.ray, t); }
    [[gnu::always_inline]] V main_of(const FogEnd<V>& from, const FogEnd<V>& to) const {
        return fog.Integrate(from, to);
    }
    [[gnu::always_inline]] End for_feather(const FogEnd<V>& end) const { return {end, fog.Logarithmic(end)}; }
    [[gnu::always_inline]] V feather_of(const End& from, const End& to) const {
        return fog.IntegrateConeF(cone, from.at, from.log, to.at, to.log);
    }
    template <class Mask>
    [[gnu::always_inline]] static End choose(Mask mask, const End& a, const End& b) {
        return {select_end(mask, a.at, b.at),
                {select(mask, a.log.s, b.log.s), select(mask, a.log.over, b.log.over),
                 select(mask, a.log.under, b.log.under)}};
    }
};

// Adds up the pieces of a stretch: the inner cone's, and with a feather the near and the far part of the outer cone,
// or all of that where the inner one gives nothing. A negative piece of the feather counts as none.
template <bool kFeathered, class V, class Light>
[[gnu::always_inline]] inline V SumOfPieces(const ConeStretches<V>& s, const Light& light) {
    const V zero(0.0);
    const auto inside = s.t_out - s.t_in > 0.0;
    const FogEnd<V> t_in = light.at(s.t_in), t_out = light.at(s.t_out);
    V main = zero;
    if (any(inside)) {
        main = light.main_of(t_in, t_out);
        main = select(inside & (main == main), main, zero);
    }
    if constexpr (!kFeathered) return main;

    const auto split = main > 0.0;
    const FogEnd<V> f_in = light.at(s.f_in), f_out = light.at(s.f_out);
    const auto near_holds = select(split, s.t_in, s.f_out) - s.f_in > 0.0;
    const auto far_holds = split & (s.f_out - s.t_out > 0.0);
    if (!any(near_holds | far_holds)) return main;
    const auto end_in = light.for_feather(t_in), end_out = light.for_feather(f_out);
    V sum = main;
    if (any(near_holds)) {
        const V near = light.feather_of(light.for_feather(f_in), Light::choose(split, end_in, end_out));
        sum = sum + select(near_holds, at_least_zero(near), zero);
    }
    if (any(far_holds)) {
        sum =
            sum + select(far_holds, at_least_zero(light.feather_of(light.for_feather(t_out), end_out)), zero);
    }
    return sum;
}

// S for these pixels. `refine` are those inside the light's screen box.
template <SpotModel kModel, bool kFeathered, class V, class Mask>
[[gnu::always_inline]] inline V SpotScattering(const SpotFrame& frame, const _VisLightStruct& light,
                                               const _OptSpotData& cone, const SpotRays<V>& r, Mask refine) {
    const _LightData& spot = frame.settings;
    const V one(1.0), zero(0.0);

    const _RayOpt<V> ray = MakeRayOpt(r.dx, r.dy, one, light);
    const BetweenCaps<V> caps = IntersectCaps(spot, light, cone, ray, r.dx, r.dy, one);
    ConeStretches<V> s{zero, zero, zero, zero};
    IntersectRayWithCone(light, cone, ray, caps, r.dx, r.dy, one, r.a, cone.coneCInner, cone.cosInnerSq,
                         &s.t_in, &s.t_out);
    if constexpr (kFeathered) {
        IntersectRayWithCone(light, cone, ray, caps, r.dx, r.dy, one, r.a, cone.coneCOuter, cone.cosOuterSq,
                             &s.f_in, &s.f_out);
    }
    if (kModel == SpotModel::natural && any(refine)) {
        const auto blend = [&](double cone_c, double cos_sq, V* near, V* far) {
            V blended_near, blended_far;
            RefineIntersection(spot, light, cone, frame.rays, r.x, r.y, *near, *far, cone_c, cos_sq,
                               &blended_near, &blended_far);
            *near = select(refine, blended_near, *near);
            *far = select(refine, blended_far, *far);
        };
        blend(cone.coneCInner, cone.cosInnerSq, &s.t_in, &s.t_out);
        if constexpr (kFeathered) blend(cone.coneCOuter, cone.cosOuterSq, &s.f_in, &s.f_out);
    }
    if (!any((s.t_out > s.t_in) | (s.f_out > s.f_in))) return zero;

    const FogRay<V> fog = MakeFogRay(r.a, r.inv_root_a, ray, cone, kModel == SpotModel::constant ? 0.0 : 1.0);
    if constexpr (kModel == SpotModel::natural) {
        return frame.spotScale * SumOfPieces<kFeathered>(s, NaturalLight<V>{NaturalFog<V>(fog), cone});
    } else if constexpr (kModel == SpotModel::distance) {
        return SumOfPieces<kFeathered>(s, LogarithmicLight<V, DistanceFog<V>>{DistanceFog<V>(fog), cone});
    } else {
        return cone.invOpening * SumOfPieces<kFeathered>(s, LogarithmicLight<V, ConstantFog<V>>{{fog}, cone});
    }
}

}  // namespace zam
