#include "host/check/library_file.h"

namespace zam::host {
namespace {

constexpr std::uint64_t kMostSymbols = 1000000, kMostExports = 100000;
constexpr std::size_t kLongestName = 300;  // what is longer is cut
constexpr std::size_t kMostLists = 64, kMostListBytes = 1 << 20;

}  // namespace

void ReadingLimits::look_at_symbols(std::uint64_t count) {
    if (count > kMostSymbols - symbols_)
        throw FormatError("it has more than " + std::to_string(kMostSymbols) + " symbols");
    symbols_ += count;
}

void ReadingLimits::add_export(Slice& slice, const ByteView& names, std::uint64_t at,
                               std::string_view prefix) {
    std::string name = names.text(at, kLongestName);
    if (!name.starts_with(prefix)) return;
    if (++exports_ > kMostExports)
        throw FormatError("it exports more than " + std::to_string(kMostExports) + " names");
    slice.exports.push_back(name.substr(prefix.size()));
}

bool add_property_resource(PropertyResources& lists, std::span<const std::uint8_t> list) {
    if (lists.size() == kMostLists) return false;
    if (list.size() > kMostListBytes) throw FormatError("a property resource is larger than 1 MiB");
    lists.emplace_back(list.begin(), list.end());
    return true;
}

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
