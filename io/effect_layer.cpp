#include "io/effect_layer.h"

#include <algorithm>

namespace zam::io {

void add_effect_layer(host::Composition& composition) {
    host::Item item;
    item.name = "Haze";
    item.width = composition.width;
    item.height = composition.height;
    for (const host::Item& other : composition.items) item.id = std::max(item.id, other.id);
    ++item.id;

    host::Layer layer;
    layer.id = composition.unused_layer_id();
    layer.kind = host::LayerKind::solid;
    layer.name = item.name;
    layer.source = item.id;
    layer.out_frame = composition.duration;
    layer.three_d = false;
    const host::Vec3 centre{composition.width / 2.0, composition.height / 2.0, 0.0};
    layer.transform.anchor = centre;
    layer.transform.position = centre;

    composition.effect.layer = layer.id;
    composition.items.push_back(std::move(item));
    composition.layers.insert(composition.layers.begin(), std::move(layer));
}

}  // namespace zam::io
