// The classic macOS resource file: a data area, and a map of types, ids and places in it.
#include "host/check/library_file.h"

namespace zam::host {

PropertyResources read_resource_file(std::span<const std::uint8_t> bytes) {
    const ByteView file(bytes, ByteOrder::big);
    const ByteView data = file.part(file.u32(0), file.u32(8)), map = file.part(file.u32(4), file.u32(12));
    const ByteView types = map.from(map.u16(24));
    PropertyResources lists;
    const std::uint32_t type_count = (types.u16(0) + 1U) & 0xFFFF;  // kept less one; none is FFFF
    for (std::uint32_t i = 0; i < type_count; ++i) {
        const std::uint64_t type = 2 + 8ULL * i;
        if (types.code(type) != "PiPL") continue;
        const std::uint32_t count = types.u16(type + 4) + 1U;
        const ByteView references = types.from(types.u16(type + 6));
        for (std::uint32_t k = 0; k < count; ++k) {
            const std::uint32_t at = references.u32(12ULL * k + 4) & 0xFFFFFF;
            if (!add_property_resource(lists, data.bytes(at + 4ULL, data.u32(at)))) return lists;
        }
    }
    return lists;
}

}  // namespace zam::host
