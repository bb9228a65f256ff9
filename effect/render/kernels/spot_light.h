#pragma once
// A spot light's scattering value S along one view ray: its cone's stretches and the chosen model's
// integrals.
#include "effect/render/kernels/cone.h"
#include "effect/render/kernels/refine.h"
#include "effect/render/kernels/spot_integrals.h"

namespace zam {

// What all pixels and spot lights of a frame share.
struct SpotFrame {
    const _LightData* settings = nullptr;
    const _VisLightStruct* lights = nullptr;
    const _OptSpotData* opt = nullptr;
    double scale = 0.0, scaleX = 0.0, scaleY = 0.0;  // as RefineIntersection takes them
    int width = 0, height = 0;
    double spotScale = 0.0;  // strength of the natural model
};

template <class V>
struct ConeStretches {
    V t_in, t_out;  // inside the inner cone
    V f_in, f_out;  // inside the outer cone; only with a feather
};

// Adds up the pieces of a stretch: the inner cone's, and with a feather the near and the far part of the
// outer cone, or all of that where the inner one gives nothing. `main_of` and `feather_of` integrate over
// [from, to].
template <class V, class Main, class Feather>
V SumOfPieces(const ConeStretches<V>& s, bool feathered, Main main_of, Feather feather_of) {
    const auto piece = [&](V from, V to, auto wanted) {
        const auto holds = wanted & (to - from > 0.0);
        return any(holds) ? select(holds, at_least_zero(feather_of(from, to)), V(0.0)) : V(0.0);
    };
    const auto inside = s.t_out - s.t_in > 0.0;
    const V main = any(inside) ? select(inside, number_or_zero(main_of(s.t_in, s.t_out)), V(0.0)) : V(0.0);
    if (!feathered) return main;
    const auto split = main > 0.0;
    return main + piece(s.f_in, s.t_in, split) + piece(s.t_out, s.f_out, split) +
           piece(s.f_in, s.f_out, !split);
}

// S for the light with this index. (x, y) is the pixel, (dx, dy, 1) its ray and a = r.r; `refine` says that
// the pixel lies inside the light's screen box.
template <class V, class M>
V SpotScattering(const M& maths, const SpotFrame& frame, int light, V x, V y, V dx, V dy, V a, bool refine) {
    const _LightData* spot = frame.settings;
    const _VisLightStruct* lights = frame.lights;
    const _OptSpotData* opt = frame.opt;
    const _OptSpotData& cone = opt[light];
    const bool feathered = lights[light].coneFeather > 0.0;
    const SpotModel model{spot->model};
    const V one(1.0), zero(0.0);

    const _RayOpt<V> ray = MakeRayOpt(dx, dy, one, lights[light]);
    ConeStretches<V> s{zero, zero, zero, zero};
    IntersectRayWithCone(maths, light, spot, lights, opt, &ray, dx, dy, one, a, cone.coneCInner,
                         cone.cosInnerSq, &s.t_in, &s.t_out);
    if (feathered) {
        IntersectRayWithCone(maths, light, spot, lights, opt, &ray, dx, dy, one, a, cone.coneCOuter,
                             cone.cosOuterSq, &s.f_in, &s.f_out);
    }

    if (model == SpotModel::natural) {
        if (refine) {
            RefineIntersection(maths, light, frame.scale, frame.scaleX, frame.scaleY, frame.width,
                               frame.height, s.t_in, s.t_out, x, y, 1.0, cone.coneCInner, cone.cosInnerSq,
                               lights, opt, spot, &s.t_in, &s.t_out);
            if (feathered) {
                RefineIntersection(maths, light, frame.scale, frame.scaleX, frame.scaleY, frame.width,
                                   frame.height, s.f_in, s.f_out, x, y, 1.0, cone.coneCOuter, cone.cosOuterSq,
                                   lights, opt, spot, &s.f_in, &s.f_out);
            }
        }
        return SumOfPieces(
            s, feathered,
            [&](V from, V to) {
                return frame.spotScale *
                       IntegrateNatural(maths, light, lights, opt, &ray, dx, dy, one, a, from, to);
            },
            [&](V from, V to) {
                return frame.spotScale *
                       IntegrateNaturalConeF(maths, light, lights, opt, &ray, dx, dy, one, a, from, to);
            });
    }
    if (model == SpotModel::distance) {
        return SumOfPieces(
            s, feathered,
            [&](V from, V to) {
                return IntegrateDistance(maths, light, lights, opt, dx, dy, one, a, from, to);
            },
            [&](V from, V to) {
                return IntegrateDistanceConeF(maths, light, lights, opt, dx, dy, one, a, from, to);
            });
    }
    if (model == SpotModel::constant) {
        const V length = SumOfPieces(
            s, feathered, [](V from, V to) { return to - from; },
            [&](V from, V to) {
                return IntegrateConstConeF(maths, light, lights, opt, dx, dy, one, a, from, to);
            });
        if (!any(length > 0.0)) return zero;
        // deliberate: divided by the cone's opening, 200 for narrow cones and 400 tan for wide ones
        const double half = lights[light].coneAngle * 0.5;
        const double opening = larger(400.0 * maths.tan(half), 200.0 * maths.cos(half));
        return select(length > 0.0, length / opening, zero);
    }
    return zero;
}

}  // namespace zam
