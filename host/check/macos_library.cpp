// Mach-O: one or several processors, exported names.
#include "host/check/library_file.h"

namespace zam::host {
namespace {

constexpr std::uint32_t kMostSlices = 20, kMostCommands = 10000;
constexpr std::uint32_t kDylib = 6, kBundle = 8, kSymbolTable = 2;

std::string processor(std::uint32_t type) {
    switch (type) {
        case 0x01000007:
            return "x86-64";
        case 0x0100000C:
            return "arm64";
        case 7:
            return "x86";
        default:
            return "processor " + std::to_string(type);
    }
}

// Names with a leading underscore, as the linker keeps them.
void read_symbols(const ByteView& slice, std::uint64_t command, bool wide, Slice& result,
                  ReadingLimits& limits) {
    const std::uint32_t symbols = slice.u32(command + 8), count = slice.u32(command + 12);
    const ByteView names = slice.part(slice.u32(command + 16), slice.u32(command + 20));
    limits.look_at_symbols(count);
    for (std::uint32_t i = 0; i < count; ++i) {
        const std::uint64_t at = symbols + std::uint64_t{i} * (wide ? 16 : 12);
        const std::uint32_t name = slice.u32(at);
        const std::uint8_t type = slice.u8(at + 4);
        // External, not private to the library, not for debuggers, and defined in a section.
        if ((type & 0x01) == 0 || (type & 0xF0) != 0 || (type & 0x0E) != 0x0E) continue;
        limits.add_export(result, names, name, "_");
    }
}

Slice read_slice(const ByteView& slice, ReadingLimits& limits) {
    Slice result;
    const std::uint32_t magic = slice.u32(0);
    if (magic != 0xFEEDFACF && magic != 0xFEEDFACE)
        throw FormatError("the code of a processor has no header");
    const bool wide = magic == 0xFEEDFACF;
    result.processor = processor(slice.u32(4));
    const std::uint32_t kind = slice.u32(12), commands = slice.u32(16);
    result.library = kind == kDylib || kind == kBundle;
    if (commands > kMostCommands) throw FormatError("it has " + std::to_string(commands) + " load commands");
    std::uint64_t at = wide ? 32 : 28;
    for (std::uint32_t i = 0; i < commands; ++i) {
        const std::uint32_t size = slice.u32(at + 4);
        if (size < 8) throw FormatError("a load command is shorter than its head");
        if (slice.u32(at) == kSymbolTable) read_symbols(slice, at, wide, result, limits);
        at += size;
    }
    return result;
}

}  // namespace

LibraryFile read_macos_library(const ByteView& file) {
    LibraryFile result;
    ReadingLimits limits;
    const ByteView fat(file.bytes(0, file.size()), ByteOrder::big);
    const std::uint32_t magic = fat.u32(0);
    if (magic != 0xCAFEBABE && magic != 0xCAFEBABF) {
        result.format = Format::macos;
        result.slices.push_back(read_slice(file, limits));
        return result;
    }
    const bool wide = magic == 0xCAFEBABF;
    const std::uint32_t count = fat.u32(4);
    if (count > kMostSlices) return result;  // other files begin with the same bytes
    result.format = Format::macos;
    for (std::uint32_t i = 0; i < count; ++i) {
        const std::uint64_t at = 8 + std::uint64_t{i} * (wide ? 32 : 20);
        const ByteView slice = wide ? file.part(fat.u64(at + 8), fat.u64(at + 16))
                                    : file.part(fat.u32(at + 8), fat.u32(at + 12));
        result.slices.push_back(read_slice(slice, limits));
    }
    return result;
}

}  // namespace zam::host
