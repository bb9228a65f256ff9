#include "host/runner/layer_handles.h"

#include <unordered_map>

namespace zam::host {
namespace {

LayerHandles::Facts facts_of(const Layer& layer, std::size_t place) {
    const AEGP_ObjectType type = layer.kind == LayerKind::light    ? AEGP_ObjectType_LIGHT
                                 : layer.kind == LayerKind::camera ? AEGP_ObjectType_CAMERA
                                                                   : AEGP_ObjectType_AV;
    return {layer.id, static_cast<std::int32_t>(place), type, static_cast<AEGP_LightType>(layer.light.type)};
}

}  // namespace

void LayerHandles::next_command(const HandleKeys& keys, AEGP_CompH comp) {
    first_ = reinterpret_cast<std::uintptr_t>(keys.make<AEGP_LayerH>(HandleKind::layer, 0));
    comp_ = comp;
    facts_.clear();
    changed();
}

void LayerHandles::withhold(bool on) {
    if (withheld_ == on) return;
    withheld_ = on;
    changed();
}

void LayerHandles::gather(const Composition& composition) {
    if (!stale_) return;
    stale_ = false;
    const std::vector<Layer>& layers = composition.layers;
    std::unordered_map<LayerId, std::uint32_t> known;  // stays empty, and costs nothing, but after changes
    for (Facts& facts : facts_) {
        known.emplace(facts.id, static_cast<std::uint32_t>(&facts - facts_.data()));
        facts.place = kDeleted;
    }
    number_at_.clear();
    number_at_.reserve(layers.size());
    facts_.reserve(layers.size());
    bool in_order = true;
    for (std::size_t place = 0; place < layers.size(); ++place) {
        const Facts facts = facts_of(layers[place], place);
        const auto before = known.find(facts.id);
        const std::size_t number = before == known.end() ? facts_.size() : before->second;
        if (number == facts_.size()) facts_.emplace_back();
        facts_[number] = facts;
        number_at_.push_back(static_cast<std::uint32_t>(number));
        in_order = in_order && number == place;
    }
    const bool none_deleted = facts_.size() == layers.size();
    if (in_order && none_deleted && !withheld_) at_hand_ = layers.size();
}

const LayerHandles::Facts* LayerHandles::look(std::uint32_t number) const {
    return number < facts_.size() && facts_[number].place != kDeleted ? &facts_[number] : nullptr;
}

AEGP_LayerH LayerHandles::look_at(std::uint32_t place) const {
    return place < number_at_.size() ? handle(number_at_[place]) : nullptr;
}

}  // namespace zam::host
