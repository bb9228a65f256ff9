#pragma once
// The sequence data: four bytes that the host saves with the project, the reach layer's id, least significant
// byte first, 0 for none. deliberate: read and written byte by byte, whatever the machine
#include <cstddef>

#include "hostapi/types.h"

namespace zam {

inline constexpr std::size_t kSequenceBytes = 4;

// Of no block at all the id is 0, and writing to it does nothing.
inline AEGP_LayerIDVal ReadReachLayerId(const void* block) {
    if (!block) return 0;
    const auto* bytes = static_cast<const A_u_char*>(block);
    A_u_long id = 0;
    for (std::size_t i = 0; i < kSequenceBytes; ++i) id |= static_cast<A_u_long>(bytes[i]) << (8 * i);
    return static_cast<AEGP_LayerIDVal>(id);
}

inline void WriteReachLayerId(void* block, AEGP_LayerIDVal layer_id) {
    if (!block) return;
    auto* bytes = static_cast<A_u_char*>(block);
    for (std::size_t i = 0; i < kSequenceBytes; ++i) {
        bytes[i] = static_cast<A_u_char>(static_cast<A_u_long>(layer_id) >> (8 * i));
    }
}

}  // namespace zam
