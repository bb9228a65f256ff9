#pragma once
// Plug-in files of a few hundred bytes, made by hand, with all that the readers look for.
#include <algorithm>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <vector>

#include "host/check/bytes.h"

namespace zam::host {

using Bytes = std::vector<std::uint8_t>;

// Bytes at places, zeros between.
class FileMaker {
  public:
    explicit FileMaker(ByteOrder order, std::size_t size = 0) : order_(order) { bytes.resize(size); }

    void put(std::size_t at, std::uint64_t value, int width) {
        if (bytes.size() < at + static_cast<std::size_t>(width))
            bytes.resize(at + static_cast<std::size_t>(width));
        for (int i = 0; i < width; ++i)
            bytes[at + static_cast<std::size_t>(i)] =
                static_cast<std::uint8_t>(value >> 8 * (order_ == ByteOrder::little ? i : width - 1 - i));
    }
    struct Number {
        std::size_t at;
        std::uint64_t value;
        int width;
    };
    void put(std::initializer_list<Number> numbers) {
        for (const auto& [at, value, width] : numbers) put(at, value, width);
    }
    void put(std::size_t at, const std::string& text) {
        if (bytes.size() < at + text.size()) bytes.resize(at + text.size());
        std::copy(text.begin(), text.end(), bytes.begin() + static_cast<std::ptrdiff_t>(at));
    }
    void put(std::size_t at, const Bytes& part) { put(at, std::string(part.begin(), part.end())); }
    // A property; codes are numbers. `padded`: the length counts the padding.
    void property(const std::string& key, const Bytes& data, bool padded) {
        const std::size_t at = bytes.size(), whole = (data.size() + 3) / 4 * 4;
        put(at, code("8BIM"), 4);
        put(at + 4, code(key), 4);
        put(at + 12, padded ? whole : data.size(), 4);
        put(at + 16, data);
        bytes.resize(at + 16 + whole);
    }
    static std::uint64_t code(const std::string& four) {
        std::uint64_t value = 0;
        for (const char c : four) value = value << 8 | static_cast<std::uint8_t>(c);
        return value;
    }

    Bytes bytes;

  private:
    ByteOrder order_;
};

// A property list, and what may be odd about it.
struct ListPlan {
    ByteOrder order = ByteOrder::little;
    bool word_before = true, padded = true;
    std::string kind = "eFKT", name = "Glass", match = "Maker Glass", entry = "Entry";
    bool flags = true, twice = false;
};
inline const ListPlan kMacosList{.order = ByteOrder::big, .word_before = false, .padded = false};

inline Bytes small_list(const ListPlan& plan) {
    FileMaker list(plan.order);
    const bool windows = plan.order == ByteOrder::little;
    const auto property = [&](const char* key, std::string data) {
        list.property(key, Bytes(data.begin(), data.end()), plan.padded);
    };
    const auto counted = [&](const char* key, const std::string& text) {
        property(key, static_cast<char>(text.size()) + text);
    };
    const std::size_t head = plan.word_before ? 2 : 0;
    if (plan.word_before) list.put(0, 1, 2);
    list.put(head + 4, (windows ? 5U : 6U) + (plan.flags ? 3U : 0U) + (plan.twice ? 1U : 0U), 4);
    property("kind", windows ? std::string(plan.kind.rbegin(), plan.kind.rend()) : plan.kind);
    counted("name", plan.name);
    if (plan.twice) counted("name", plan.name);
    counted("catg", "Glass");
    counted("eMNA", plan.match);
    if (windows) {
        property("8664", plan.entry + '\0');
    } else {
        counted("mi64", plan.entry);
        counted("ma64", plan.entry);
    }
    if (plan.flags)
        for (const char* key : {"eVER", "eGLO", "eGL2"}) property(key, "\1\2\3\4");
    return list.bytes;
}

// A section at address 0x1000 and place 0x200: exports at its start, resources at 0x100.
inline Bytes small_windows_library(const Bytes& list = small_list({})) {
    FileMaker file(ByteOrder::little, 0x500);
    file.put(0, "MZ");
    file.put(0x3C, 0x40, 4);
    file.put(0x40, std::string("PE\0\0", 4));
    // Sections, size of the optional header, a library of 64 bits, tables, exports, resources.
    file.put({{0x44, 0x8664, 2}, {0x46, 1, 2}, {0x54, 0xF0, 2}, {0x56, 0x2022, 2}, {0x58, 0x20B, 2}});
    file.put({{0xC4, 16, 4}, {0xC8, 0x1000, 4}, {0xD8, 0x1100, 4}});
    const std::size_t section = 0x58 + 0xF0, names = 0x200;
    file.put({{section + 8, 0x300, 4}, {section + 12, 0x1000, 4}});
    file.put({{section + 16, 0x300, 4}, {section + 20, 0x200, 4}});
    file.put({{names + 24, 2, 4}, {names + 32, 0x1030, 4}, {0x230, 0x1040, 4}, {0x234, 0x1050, 4}});
    file.put(0x240, "Entry");
    file.put(0x250, "Other");
    const std::size_t tree = 0x300;
    file.put({{tree + 12, 1, 2}, {tree + 16, 0x80000070, 4}, {tree + 20, 0x80000020, 4}});  // a named type
    file.put({{tree + 0x20 + 14, 1, 2}, {tree + 0x30, 16000, 4}, {tree + 0x34, 0x80000040, 4}});
    file.put({{tree + 0x40 + 14, 1, 2}, {tree + 0x50, 1033, 4}, {tree + 0x54, 0x60, 4}});
    file.put({{tree + 0x60, 0x1180, 4}, {tree + 0x64, list.size(), 4}, {tree + 0x70, 4, 2}});
    file.put(tree + 0x72, std::string("P\0i\0P\0L\0", 8));
    file.put(0x380, list);
    return file.bytes;
}

// Names at 0x40, three symbols at 0x60, of which the second is exported and the third wanted from elsewhere, and
// section headers at 0xF0: none, the symbols' and the names'.
inline Bytes small_linux_library() {
    FileMaker file(ByteOrder::little, 0x1B0);
    file.put(0,
             "\x7F"
             "ELF\2\1\1");
    file.put({{16, 3, 2}, {18, 62, 2}, {40, 0xF0, 8}, {58, 64, 2}, {60, 3, 2}});
    file.put(0x41, "EntryPointFunc");
    file.put(0x50, "other");
    file.put({{0x78, 1, 4}, {0x7C, 0x12, 1}, {0x7E, 5, 2}, {0x90, 16, 4}, {0x94, 0x12, 1}});
    file.put({{0x134, 11, 4}, {0x148, 0x60, 8}, {0x150, 72, 8}, {0x158, 2, 4}});
    file.put({{0x174, 3, 4}, {0x188, 0x40, 8}, {0x190, 0x20, 8}});
    return file.bytes;
}

inline Bytes small_macos_slice(std::uint32_t processor) {
    FileMaker file(ByteOrder::little, 0x80);
    // A bundle, load commands, symbols; the first of two is exported, the other wanted from elsewhere.
    file.put({{0, 0xFEEDFACF, 4}, {4, processor, 4}, {12, 8, 4}, {16, 1, 4}, {32, 2, 4}, {36, 24, 4}});
    file.put({{40, 0x40, 4}, {44, 2, 4}, {48, 0x60, 4}, {52, 32, 4}});
    file.put({{0x40, 1, 4}, {0x44, 0x0F, 1}, {0x50, 8, 4}, {0x54, 0x01, 1}});
    file.put(0x61, "_Entry");
    file.put(0x68, "_other");
    return file.bytes;
}

inline Bytes small_macos_library() {
    FileMaker file(ByteOrder::big, 0x200);
    file.put({{0, 0xCAFEBABE, 4}, {4, 2, 4}});
    for (std::size_t i = 0; i < 2; ++i) {
        const Bytes slice = small_macos_slice(i ? 0x0100000C : 0x01000007);
        file.put({{16 + 20 * i, 0x100 + 0x80 * i, 4}, {20 + 20 * i, slice.size(), 4}});
        file.put(0x100 + 0x80 * i, slice);
    }
    return file.bytes;
}

inline Bytes small_resource_file(const Bytes& list) {
    FileMaker file(ByteOrder::big);
    const std::size_t map = 0x14 + list.size();
    file.put({{0, 0x10, 4}, {4, map, 4}, {8, 4 + list.size(), 4}, {12, 50, 4}, {0x10, list.size(), 4}});
    file.put(0x14, list);
    file.put(map + 30, "PiPL");
    file.put({{map + 24, 28, 2}, {map + 36, 10, 2}, {map + 38, 16000, 2}, {map + 49, 0, 1}});
    return file.bytes;
}

}  // namespace zam::host
