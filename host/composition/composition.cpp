#include "host/composition/composition.h"

#include <algorithm>

namespace zam::host {

const Layer* Composition::find_layer(LayerId id) const {
    const auto found =
        std::find_if(layers.begin(), layers.end(), [id](const Layer& l) { return l.id == id; });
    return found == layers.end() ? nullptr : &*found;
}

Layer* Composition::find_layer(LayerId id) {
    return const_cast<Layer*>(static_cast<const Composition*>(this)->find_layer(id));
}

const Item* Composition::find_item(ItemId id) const {
    const auto found = std::find_if(items.begin(), items.end(), [id](const Item& i) { return i.id == id; });
    return found == items.end() ? nullptr : &*found;
}

LayerId Composition::unused_layer_id() const {
    // Above all others, so that the id of a layer that was deleted on the way is not handed out again at
    // once; when that would overflow, the lowest gap.
    LayerId highest = 0;
    for (const Layer& layer : layers) highest = std::max(highest, layer.id);
    if (highest < INT32_MAX) return highest + 1;
    LayerId id = 1;
    while (find_layer(id)) ++id;
    return id;
}

}  // namespace zam::host
