#pragma once
// What can be known of a plug-in file without loading it: of a Windows or Linux library, or a macOS library with one
// or several processors in it.
#include <string>
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

struct LibraryFile {
    Format format = Format::none;
    std::vector<Slice> slices;                                  // one, but for macOS
    std::vector<std::vector<std::uint8_t>> property_resources;  // that the file itself holds
};

// A file that is none of these has Format::none. Throws FormatError for one that is damaged.
[[nodiscard]] LibraryFile read_library(std::span<const std::uint8_t> bytes);

// The readers by format; the first bytes have been looked at.
[[nodiscard]] LibraryFile read_windows_library(const ByteView& file);
[[nodiscard]] LibraryFile read_macos_library(const ByteView& file);
[[nodiscard]] LibraryFile read_linux_library(const ByteView& file);

// The property resources in a macOS resource file, kept in the data fork. Throws FormatError.
[[nodiscard]] std::vector<std::vector<std::uint8_t>> read_resource_file(std::span<const std::uint8_t> bytes);

}  // namespace zam::host
