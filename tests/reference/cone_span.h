#pragma once
// The part of a view ray inside a spot light's cone.

#include "tests/reference/scene.h"

namespace zam::reference {

// Ray parameters; empty when far <= near.  The ends of an empty stretch still count: a feather piece may
// start there.
struct Stretch {
    Real near = 0, far = 0;
    [[nodiscard]] Real length() const { return far - near; }
};

// The ray inside the cone of half angle acos(cos_half) around the spot's axis, between start and end cap, in
// front of the camera.  cos_half is the spot's cos_inner or cos_outer.
[[nodiscard]] Stretch cone_stretch(const Vec3& ray, const SpotCone& spot, Real cos_half);

// The same for the pixel (px, py), smoothed across the cone's silhouette with up to four more rays beside it;
// `own` is the stretch of the pixel's own ray.
[[nodiscard]] Stretch refined_stretch(const View& view, int px, int py, const SpotCone& spot, Real cos_half,
                                      const Stretch& own);

}  // namespace zam::reference
