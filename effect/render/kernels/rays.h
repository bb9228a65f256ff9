#pragma once
// How a pixel becomes a view ray.
namespace zam {

// The ray of pixel (x, y) is (RayX(x), RayY(y), 1).
struct PixelRays {
    double scale = 0.0, scaleX = 0.0,
           scaleY = 0.0;        // 1 / zoom, pixel aspect / downsample x, 1 / downsample y
    int width = 0, height = 0;  // of the picture
};

// deliberate: through the pixel's top left corner, no half-pixel offset
template <class V>
[[gnu::always_inline]] inline V RayX(const PixelRays& rays, V x) {
    return (x - rays.width * 0.5) * rays.scaleX * rays.scale;
}
template <class V>
[[gnu::always_inline]] inline V RayY(const PixelRays& rays, V y) {
    return (y - rays.height * 0.5) * rays.scaleY * rays.scale;
}

}  // namespace zam
