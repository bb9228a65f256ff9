#pragma once
// Layers by id in constant time, for walks that ask for every layer of a large composition. The index holds
// places only and checks each answer, so it notices by itself that layers were added, moved or removed.
#include <cstddef>
#include <unordered_map>

#include "host/composition/composition.h"

namespace zam::host {

class LayerIndex {
  public:
    // Null when the composition has no such layer.
    Layer* find(Composition& composition, LayerId id) {
        std::vector<Layer>& layers = composition.layers;
        const auto known = place_.find(id);
        if (known != place_.end() && known->second < layers.size() && layers[known->second].id == id) {
            return &layers[known->second];
        }
        if (!composition.find_layer(id)) return nullptr;
        place_.clear();
        for (std::size_t i = 0; i < layers.size(); ++i) place_.emplace(layers[i].id, i);
        return &layers[place_.at(id)];
    }

  private:
    std::unordered_map<LayerId, std::size_t> place_;
};

}  // namespace zam::host
