#include "host/composition/queries.h"

#include <algorithm>

namespace zam::host {

bool in_range(const Layer& layer, double frame) { return layer.in_frame <= frame && frame < layer.out_frame; }

const Layer* active_camera(const Composition& composition, double frame) {
    for (const Layer& layer : composition.layers) {
        if (layer.kind == LayerKind::camera && layer.video && in_range(layer, frame)) return &layer;
    }
    return nullptr;
}

bool any_solo(const Composition& composition) {
    return std::any_of(composition.layers.begin(), composition.layers.end(),
                       [](const Layer& l) { return l.solo; });
}

bool video_really_on(const Layer& layer, bool some_layer_is_soloed) {
    return layer.video && (layer.solo || !some_layer_is_soloed);
}

double default_camera_distance(const Composition& composition) {
    return composition.width * composition.pixel_aspect.value() * 50.0 / 36.0;
}

Matrix default_camera_matrix(const Composition& composition) {
    Matrix m;
    m.translate({composition.width / 2.0, composition.height / 2.0, -default_camera_distance(composition)});
    return m;
}

namespace {
// A stretch of 0 would put all of a layer at one moment; it counts as none.
double stretch_factor(const Layer& layer) { return layer.stretch == 0.0 ? 1.0 : layer.stretch / 100.0; }
}  // namespace

double comp_frame(const Layer& layer, double frame) {
    return layer.start_frame + frame * stretch_factor(layer);
}

double layer_frame(const Layer& layer, double frame) {
    return (frame - layer.start_frame) / stretch_factor(layer);
}

Size layer_size(const Composition& composition, const Layer& layer) {
    const Item* source = composition.find_item(layer.source);
    if (source) return {source->width, source->height};
    return {composition.width, composition.height};
}

Size downsampled(const Size& full, const Ratio& x, const Ratio& y) {
    const auto down = [](int pixels, const Ratio& factor) {
        return std::max(1, static_cast<int>(std::ceil(pixels * factor.value() - 1e-9)));
    };
    return {down(full.width, x), down(full.height, y)};
}

bool descends_from(const Composition& composition, LayerId layer, LayerId ancestor) {
    for (std::size_t step = 0; layer != 0 && step <= composition.layers.size(); ++step) {
        if (layer == ancestor) return true;
        const Layer* found = composition.find_layer(layer);
        layer = found ? found->parent : 0;
    }
    return false;
}

}  // namespace zam::host
