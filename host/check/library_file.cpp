#include "host/check/library_file.h"

namespace zam::host {

LibraryFile read_library(std::span<const std::uint8_t> bytes) {
    const ByteView little(bytes, ByteOrder::little);
    if (bytes.size() < 4) return {};
    const std::uint32_t magic = little.u32(0);
    if ((magic & 0xFFFF) == 0x5A4D) return read_windows_library(little);  // "MZ"
    if (magic == 0x464C457F) return read_linux_library(little);
    // One processor, 64 and 32 bits, and several with either width of offsets.
    if (magic == 0xFEEDFACF || magic == 0xFEEDFACE || magic == 0xBEBAFECA || magic == 0xBFBAFECA)
        return read_macos_library(little);
    return {};
}

}  // namespace zam::host
