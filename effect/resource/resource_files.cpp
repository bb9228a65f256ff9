#include "effect/resource/resource_files.h"

#include <cstdio>

#include "effect/resource/byte_writer.h"

namespace zam::resource {

// Words of 16 bits are what every resource compiler takes; a list has an even number of bytes.
std::string windows_script(const Bytes& list) {
    std::string text = "// Written by zam_pipl; see effect/resource.\nLANGUAGE 9, 1\n";
    text += std::to_string(kPropertyListId) + " PIPL DISCARDABLE\nBEGIN\n";
    for (std::size_t i = 0; i + 1 < list.size(); i += 2) {
        char word[16];
        std::snprintf(word, sizeof word, "0x%04X", list[i] | list[i + 1] << 8);
        const bool last = i + 2 >= list.size();
        text += (i % 16 == 0 ? "    " : "") + std::string(word) + (last ? "" : ",");
        text += last || i % 16 == 14 ? "\n" : " ";
    }
    return text + "END\n";
}

Bytes macos_file(const Bytes& list) {
    constexpr std::uint32_t kDataAt = 0x100, kMapBytes = 50, kTypeListAt = 28, kReferencesAt = 10;
    const auto size = static_cast<std::uint32_t>(list.size());
    ByteWriter header(Order::big);
    header.u32(kDataAt);
    header.u32(kDataAt + 4 + size);
    header.u32(4 + size);
    header.u32(kMapBytes);

    ByteWriter file(Order::big);
    file.append(header.bytes());
    file.zeros(kDataAt - header.bytes().size());
    file.u32(size);
    file.append(list);
    // The map: a copy of the header, room for the system's own use, then one type with one resource.
    file.append(header.bytes());
    file.zeros(8);
    file.u16(kTypeListAt);
    file.u16(kMapBytes);  // names would begin behind the map; there are none
    file.u16(0);          // types, less one
    file.code("PiPL");
    file.u16(0);  // resources of this type, less one
    file.u16(kReferencesAt);
    file.u16(kPropertyListId);
    file.u16(0xFFFF);  // no name
    file.u32(0);       // attributes, and the data's place in the data area
    file.u32(0);
    return file.bytes();
}

}  // namespace zam::resource
