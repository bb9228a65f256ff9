#pragma once
// Questions about a composition at a time. Frames are composition frames.
#include "host/composition/composition.h"
#include "host/composition/matrix.h"

namespace zam::host {

// In point inclusive, out point exclusive.
[[nodiscard]] bool in_range(const Layer& layer, double frame);

// The topmost camera whose video switch is on and whose range contains the frame; null when there is none.
[[nodiscard]] const Layer* active_camera(const Composition& composition, double frame);

[[nodiscard]] bool any_solo(const Composition& composition);
// The video switch with solo taken into account; time and parents play no role.
[[nodiscard]] bool video_really_on(const Layer& layer, bool some_layer_is_soloed);

// Distance of the default view (a 50 mm lens on 36 mm film) to the plane that it shows 1:1, in pixels.
[[nodiscard]] double default_camera_distance(const Composition& composition);
// The default view's matrix: in front of the composition's centre, looking along +z.
[[nodiscard]] Matrix default_camera_matrix(const Composition& composition);

// Layer time 0 is at the layer's start; stretch is how much longer than its own time a layer lasts.
[[nodiscard]] double comp_frame(const Layer& layer, double layer_frame);
[[nodiscard]] double layer_frame(const Layer& layer, double comp_frame);

struct Size {
    int width = 0, height = 0;
};
// Of the layer's source, or of the composition when it shows none.
[[nodiscard]] Size layer_size(const Composition& composition, const Layer& layer);
// At a lower resolution; rounded up, and at least one pixel.
[[nodiscard]] Size downsampled(const Size& full, const Ratio& x, const Ratio& y);

// True when `layer` is `ancestor` or has it somewhere above it.
[[nodiscard]] bool descends_from(const Composition& composition, LayerId layer, LayerId ancestor);

}  // namespace zam::host
