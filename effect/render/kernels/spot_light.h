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

// An end with what each model wants to know of it: the natural model the rational part of its feather, the others
// sqrt(s2).
template <class V>
struct KnownEnd {
    FogEnd<V> end;
    V known;
};
template <class Mask, class V>
KnownEnd<V> choose(Mask mask, const KnownEnd<V>& a, const KnownEnd<V>& b) {
    return {
        {select(mask, a.end.t, b.end.t), select(mask, a.end.v, b.end.v), select(mask, a.end.s2, b.end.s2)},
        select(mask, a.known, b.known)};
}

// Adds up the pieces of a stretch: the inner cone's, and with a feather the near and the far part of the outer cone,
// or all of that where the inner one gives nothing. Light makes `end_at(t)` of an end and integrates from one end to
// another: `main_of` in the inner cone, `feather_of` in the feather, where a negative piece counts as none.
template <bool kFeathered, class V, class Light>
[[gnu::always_inline]] inline V SumOfPieces(const ConeStretches<V>& s, const Light& light) {
    const V zero(0.0);
    const auto inside = s.t_out - s.t_in > 0.0;
    const auto t_in = light.end_at(s.t_in), t_out = light.end_at(s.t_out);
    V main = zero;
    if (any(inside)) {
        main = light.main_of(t_in, t_out);
        main = select(inside & (main == main), main, zero);
    }
    if constexpr (!kFeathered) return main;

    const auto split = main > 0.0;
    const auto f_in = light.end_at(s.f_in), f_out = light.end_at(s.f_out);
    const auto near_end = choose(split, t_in, f_out);
    const auto near_holds = near_end.end.t - f_in.end.t > 0.0;
    const auto far_holds = split & (f_out.end.t - t_out.end.t > 0.0);
    V sum = main;
    if (any(near_holds))
        sum = sum + select(near_holds, at_least_zero(light.feather_of(f_in, near_end)), zero);
    if (any(far_holds)) sum = sum + select(far_holds, at_least_zero(light.feather_of(t_out, f_out)), zero);
    return sum;
}

template <bool kFeathered, class V>
struct NaturalLight {
    NaturalFog<V> fog;
    const _OptSpotData& cone;

    KnownEnd<V> end_at(V t) const {
        const FogEnd<V> end = MakeFogEnd(fog.ray, t);
        return {end, kFeathered ? fog.Rational(end) : V(0.0)};
    }
    V main_of(const KnownEnd<V>& from, const KnownEnd<V>& to) const {
        return fog.Integrate(from.end, to.end);
    }
    V feather_of(const KnownEnd<V>& from, const KnownEnd<V>& to) const {
        return fog.IntegrateConeF(cone, from.end, from.known, to.end, to.known);
    }
};

template <class V>
struct DistanceLight {
    DistanceFog<V> fog;
    const _OptSpotData& cone;

    KnownEnd<V> end_at(V t) const {
        const FogEnd<V> end = MakeFogEnd(fog.ray, t);
        return {end, Root(end.s2)};
    }
    V main_of(const KnownEnd<V>& from, const KnownEnd<V>& to) const {
        return fog.Integrate(from.end, from.known, to.end, to.known);
    }
    V feather_of(const KnownEnd<V>& from, const KnownEnd<V>& to) const {
        return fog.IntegrateConeF(cone, from.end, from.known, to.end, to.known);
    }
};

// Through the apex the true distance vanishes; its root only has to be legal there.
inline constexpr double kLeastSquare = 1e-100;

template <bool kFeathered, class V>
struct ConstantLight {
    FogRay<V> ray;
    const _OptSpotData& cone;

    KnownEnd<V> end_at(V t) const {
        const FogEnd<V> end = MakeFogEnd(ray, t);
        return {end, kFeathered ? Root(larger(end.s2, V(kLeastSquare))) : V(0.0)};
    }
    V main_of(const KnownEnd<V>& from, const KnownEnd<V>& to) const { return to.end.t - from.end.t; }
    V feather_of(const KnownEnd<V>& from, const KnownEnd<V>& to) const {
        return IntegrateConstConeF(ray, cone, from.end, from.known, to.end, to.known);
    }
};

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
        return frame.spotScale *
               SumOfPieces<kFeathered>(s, NaturalLight<kFeathered, V>{NaturalFog<V>(fog), cone});
    } else if constexpr (kModel == SpotModel::distance) {
        return SumOfPieces<kFeathered>(s, DistanceLight<V>{DistanceFog<V>(fog), cone});
    } else {
        return cone.invOpening * SumOfPieces<kFeathered>(s, ConstantLight<kFeathered, V>{fog, cone});
    }
}

}  // namespace zam
