#pragma once
// The layers of a composition as an effect holds them. An effect may walk over all layers once per light, so what
// such walks ask is kept here in one short record per layer, and a handle is checked with one comparison: the
// handles of a command are numbers that follow each other.
#include <cstdint>
#include <vector>

#include "host/composition/composition.h"
#include "host/runner/handle_keys.h"
#include "hostapi/scene_values.h"

namespace zam::host {

class LayerHandles {
  public:
    struct Facts {
        LayerId id = 0;
        std::int32_t place = kDeleted;  // in the stack
        AEGP_ObjectType object_type = AEGP_ObjectType_NONE;
        AEGP_LightType light_type = 0;  // of a light
    };
    static constexpr std::int32_t kDeleted = -1;

    // All handles expire.
    void next_command(const HandleKeys& keys, AEGP_CompH comp);
    // After any change to layers: facts are gathered anew when they are asked for; handles stay good.
    void changed() {
        if (at_hand_ != 0) at_hand_ = 0;  // while withheld, other threads may be reading it
        stale_ = true;
    }
    // Nothing is at hand while withheld.
    void withhold(bool on);

    // What needs no further check. That a layer is not at hand says nothing about it.
    [[nodiscard]] bool at_hand(AEGP_CompH comp, A_long index) const {
        return comp == comp_ && static_cast<std::uint32_t>(index) < at_hand_;
    }
    [[nodiscard]] bool at_hand(AEGP_LayerH layer) const { return number_of(layer) < at_hand_; }
    // Of those at hand only.
    [[nodiscard]] AEGP_LayerH operator[](A_long index) const {
        return handle(static_cast<std::uint32_t>(index));
    }
    [[nodiscard]] const Facts& operator[](AEGP_LayerH layer) const { return facts_[number_of(layer)]; }

    // These tell for sure, after gathering what changed.
    void gather(const Composition& composition);
    // What is known of the layer with this number in its handle; null when it was deleted or never there.
    [[nodiscard]] const Facts* look(std::uint32_t number) const;
    // Null for a place beyond the stack.
    [[nodiscard]] AEGP_LayerH look_at(std::uint32_t place) const;

  private:
    [[nodiscard]] AEGP_LayerH handle(std::uint32_t number) const {
        return reinterpret_cast<AEGP_LayerH>(static_cast<std::uintptr_t>(first_ + number));
    }
    [[nodiscard]] std::uint64_t number_of(AEGP_LayerH layer) const {
        return reinterpret_cast<std::uintptr_t>(layer) - first_;
    }

    std::uint64_t first_ = 0;    // the handle with number 0
    std::uint64_t at_hand_ = 0;  // layers: all, as long as their numbers are their places, or none
    AEGP_CompH comp_ = nullptr;
    bool stale_ = true, withheld_ = false;
    std::vector<Facts> facts_;              // by number
    std::vector<std::uint32_t> number_at_;  // by place in the stack
};

}  // namespace zam::host
