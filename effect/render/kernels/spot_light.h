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
    V a;  // r.r
};

template <class V>
struct ConeStretches {
    V t_in, t_out;  // inside the inner cone
    V f_in, f_out;  // inside the outer cone; with a feather only
};

// A feather's integral from that of the cosine and the plain one; a negative one counts as none.
template <class V>
[[gnu::always_inline]] inline V Feather(const _OptSpotData& cone, V cosine, V plain) {
    return at_least_zero((cosine - cone.cosOuter * plain) * cone.invFeather);
}
template <class V, class Fog, class End>
[[gnu::always_inline]] inline V FeatherOf(const Fog& fog, const _OptSpotData& cone, const End& from,
                                          const End& to) {
    return Feather(cone, fog.IntegrateCosine(from, to), fog.Integrate(from, to));
}
// The near and the far one each for itself. Out of the way: few pixels need it.
template <class V, class Fog, class End>
[[gnu::noinline, gnu::cold]] V FeathersApart(Fog fog, const _OptSpotData& cone, FeatherEnds<End> ends) {
    return FeatherOf<V>(fog, cone, ends.f_in, ends.t_in) + FeatherOf<V>(fog, cone, ends.t_out, ends.f_out);
}

// The inner cone's stretch and, with a feather, the near and the far stretch beside it, or all of the outer cone's
// where the inner cone has none. A stretch of the feather that comes out negative counts as none.
template <bool kFeathered, class V, class Fog>
[[gnu::always_inline]] inline V SumOfPieces(const ConeStretches<V>& s, const Fog& fog,
                                            const _OptSpotData& cone) {
    using End = typename Fog::End;
    const V zero(0.0);
    const auto split = s.t_out > s.t_in;
    // Without an inner stretch, none at the end of the outer one.
    const V inner_from = kFeathered ? select(split, s.t_in, s.f_out) : s.t_in;
    const V inner_to = kFeathered ? select(split, s.t_out, s.f_out) : s.t_out;
    const End t_in = fog.At(inner_from), t_out = fog.At(inner_to);
    V main = zero;
    if (any(split)) {
        main = select(split, fog.Integrate(t_in, t_out), zero);
    }
    if constexpr (!kFeathered) return main;

    const bool near = any(inner_from > s.f_in), far = any(s.f_out > inner_to);
    if (!near && !far) return main;
    End from = t_out, to = t_in;
    // Ends that refinement has moved past each other leave no stretch between.
    if (near) from = fog.At(smaller(s.f_in, inner_from));
    if (far) to = fog.At(larger(s.f_out, inner_to));
    if (!(near && far)) return main + FeatherOf<V>(fog, cone, from, to);

    const FeatherEnds<End> ends{from, t_in, t_out, to};
    V feather = Feather(cone, fog.IntegrateCosine(ends), fog.Integrate(from, to) - main);
    const auto near_is_safe = fog.KnownNotNegative(cone, from, t_in);
    const auto far_is_safe = fog.KnownNotNegative(cone, t_out, to);
    const auto apart = split & !(near_is_safe & far_is_safe);
    if (any(apart)) [[unlikely]] {
        feather = select(apart, FeathersApart<V>(fog, cone, ends), feather);
    }
    return main + feather;
}

// Where the rays are in the light's cones. `refine` are those inside the light's screen box.
template <SpotModel kModel, bool kFeathered, class V, class Mask>
[[gnu::always_inline]] inline ConeStretches<V> StretchesOf(const SpotFrame& frame,
                                                           const _VisLightStruct& light,
                                                           const _OptSpotData& cone, const SpotRays<V>& r,
                                                           const _RayOpt<V>& ray, Mask refine) {
    const _LightData& spot = frame.settings;
    const V one(1.0), zero(0.0);
    const BetweenCaps<V> caps = IntersectCaps(spot, light, cone, ray, r.dx, r.dy, one);
    ConeStretches<V> s{zero, zero, zero, zero};
    IntersectRayWithCone(light, cone, ray, caps, r.dx, r.dy, one, r.a, cone.coneCInner, cone.cosInnerSq,
                         &s.t_in, &s.t_out);
    if constexpr (kFeathered) {
        IntersectRayWithCone(light, cone, ray, caps, r.dx, r.dy, one, r.a, cone.coneCOuter, cone.cosOuterSq,
                             &s.f_in, &s.f_out);
    }
    if (kModel == SpotModel::natural && any(refine)) {
        const FirstSamples<V> first = MakeFirstSamples(spot, light, cone, frame.rays, r.x, r.y);
        const auto blend = [&](double cone_c, double cos_sq, V* near, V* far) {
            V blended_near = *near, blended_far = *far;
            RefineIntersection(spot, light, cone, frame.rays, r.x, r.y, first, cone_c, cos_sq, &blended_near,
                               &blended_far);
            *near = select(refine, blended_near, *near);
            *far = select(refine, blended_far, *far);
        };
        blend(cone.coneCInner, cone.cosInnerSq, &s.t_in, &s.t_out);
        if constexpr (kFeathered) blend(cone.coneCOuter, cone.cosOuterSq, &s.f_in, &s.f_out);
    }
    return s;
}

// S for these pixels.
template <SpotModel kModel, bool kFeathered, class V>
[[gnu::always_inline]] inline V SpotScattering(const SpotFrame& frame, const _OptSpotData& cone,
                                               const FogRay<V>& fog, const ConeStretches<V>& s) {
    if constexpr (kModel == SpotModel::natural) {
        return frame.spotScale * SumOfPieces<kFeathered>(s, NaturalFog<V>(fog), cone);
    } else if constexpr (kModel == SpotModel::distance) {
        return SumOfPieces<kFeathered>(s, DistanceFog<V>(fog), cone);
    } else {
        return cone.invOpening * SumOfPieces<kFeathered>(s, ConstantFog<V>{fog}, cone);
    }
}

}  // namespace zam
