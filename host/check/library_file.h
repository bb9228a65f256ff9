#pragma once
// What can be known of a plug-in file without loading it: of a Windows or Linux library, or a macOS library with one
// or several processors in it.
#include <string>
#include <string_view>
#include <vector>

#include "host/check/bytes.h"

namespace zam::host {

enum class Format { none, windows, macos, linux_ };  // `linux` alone is a macro here and there

// The code for one processor.
struct Slice {
    std::string processor;  // "x86-64", "arm64", or another's name or number
    bool library = false;   // neither a program nor an object file
    bool knows_exports = true;
    std::vector<std::string> exports;  // by name
};

using PropertyResources = std::vector<std::vector<std::uint8_t>>;

struct LibraryFile {
    Format format = Format::none;
    std::vector<Slice> slices;             // one, but for macOS
    PropertyResources property_resources;  // that the file itself holds
};

// A file that is none of these has Format::none. Throws FormatError for one that is damaged.
[[nodiscard]] LibraryFile read_library(std::span<const std::uint8_t> bytes);

// Tables may be announced many times over, overlap, and name the same bytes again and again: the size of a file bounds
// neither the time nor the memory that they take. These are the bounds, of all processors of a file together and far
// above what effects have; beyond them a file is refused with a FormatError.
class ReadingLimits {
  public:
    void look_at_symbols(std::uint64_t count);
    // The name at a place among others, without what is before it in the code of macOS.
    void add_export(Slice& slice, const ByteView& names, std::uint64_t at, std::string_view prefix = "");

  private:
    std::uint64_t symbols_ = 0, exports_ = 0;
};
// False when there are 64, and no more are looked at. Throws FormatError for one of more than 1 MiB.
bool add_property_resource(PropertyResources& lists, std::span<const std::uint8_t> list);

// The readers by format; the first bytes have been looked at.
[[nodiscard]] LibraryFile read_windows_library(const ByteView& file);
[[nodiscard]] LibraryFile read_macos_library(const ByteView& file);
[[nodiscard]] LibraryFile read_linux_library(const ByteView& file);

// The property resources in a macOS resource file, kept in the data fork. Throws FormatError.
[[nodiscard]] PropertyResources read_resource_file(std::span<const std::uint8_t> bytes);

}  // namespace zam::host
