// ELF: header and exported names.
#include "host/check/library_file.h"

namespace zam::host {
namespace {

constexpr std::uint32_t kDynamicSymbols = 11;
constexpr std::uint64_t kSymbolBytes = 24, kSectionBytes = 64;

std::string processor(std::uint16_t machine) {
    switch (machine) {
        case 62:
            return "x86-64";
        case 183:
            return "arm64";
        case 3:
            return "x86";
        default:
            return "processor " + std::to_string(machine);
    }
}

void read_symbols(const ByteView& file, std::uint64_t sections, std::uint64_t section, Slice& slice) {
    const std::uint64_t at = file.u64(section + 24), count = file.u64(section + 32) / kSymbolBytes;
    const std::uint64_t names_section = sections + kSectionBytes * file.u32(section + 40);
    const ByteView names = file.part(file.u64(names_section + 24), file.u64(names_section + 32));
    ReadingLimits limits;
    limits.look_at_symbols(count);
    for (std::uint64_t i = 0; i < count; ++i) {
        const std::uint64_t symbol = at + kSymbolBytes * i;
        const int binding = file.u8(symbol + 4) >> 4;
        const bool defined = file.u16(symbol + 6) != 0;
        if (defined && (binding == 1 || binding == 2)) limits.add_export(slice, names, file.u32(symbol));
    }
    slice.knows_exports = true;
}

}  // namespace

LibraryFile read_linux_library(const ByteView& file) {
    LibraryFile result;
    result.format = Format::linux_;
    Slice slice;
    slice.knows_exports = false;
    slice.processor = processor(file.u16(18));
    if (file.u8(4) != 2) {
        slice.processor += ", 32 bits";
    } else if (file.u8(5) != 1) {
        slice.processor += ", big-endian";
    } else {
        slice.library = file.u16(16) == 3;
        const std::uint64_t sections = file.u64(40);
        const std::uint16_t count = file.u16(60);
        for (std::uint16_t i = 0; i < count && file.u16(58) == kSectionBytes; ++i) {
            const std::uint64_t section = sections + kSectionBytes * i;
            if (file.u32(section + 4) != kDynamicSymbols) continue;
            read_symbols(file, sections, section, slice);
            break;  // a library has one such table
        }
    }
    result.slices.push_back(std::move(slice));
    return result;
}

}  // namespace zam::host
