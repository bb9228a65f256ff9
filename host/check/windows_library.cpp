// PE: headers, exported names, and resources of the type PIPL.
#include <algorithm>
#include <cctype>

#include "host/check/library_file.h"

namespace zam::host {
namespace {

constexpr std::uint32_t kMostSections = 1000, kMostEntries = 10000;

struct Section {
    std::uint64_t address, size, at, stored;
};
struct Table {
    std::uint32_t address = 0, size = 0;
};

class Reader {
  public:
    explicit Reader(const ByteView& file) : file_(file) {}

    LibraryFile read() {
        LibraryFile result;
        const std::uint64_t header = file_.u32(0x3C);
        if (file_.u32(header) != 0x00004550) return result;  // a program of older systems
        result.format = Format::windows;
        Slice slice;
        slice.processor = processor(file_.u16(header + 4));
        const std::uint16_t sections = file_.u16(header + 6), optional_size = file_.u16(header + 20);
        slice.library = (file_.u16(header + 22) & 0x2000) != 0;
        const std::uint64_t optional = header + 24;
        const bool wide = file_.u16(optional) == 0x20B;
        const std::uint64_t tables = optional + (wide ? 112 : 96);
        const std::uint32_t count = file_.u32(tables - 4);
        if (sections > kMostSections) throw FormatError("it has " + std::to_string(sections) + " sections");
        for (std::uint16_t i = 0; i < sections; ++i) {
            const std::uint64_t at = optional + optional_size + 40ULL * i;
            sections_.push_back(
                {file_.u32(at + 12), file_.u32(at + 8), file_.u32(at + 20), file_.u32(at + 16)});
        }
        const auto table = [&](std::uint32_t index) -> Table {
            if (index >= count) return {};
            return {file_.u32(tables + 8ULL * index), file_.u32(tables + 8ULL * index + 4)};
        };
        if (const Table exports = table(0); exports.address) read_exports(exports, slice);
        if (const Table resources = table(2); resources.address) read_resources(resources, result);
        result.slices.push_back(std::move(slice));
        return result;
    }

  private:
    static std::string processor(std::uint16_t machine) {
        switch (machine) {
            case 0x8664:
                return "x86-64";
            case 0xAA64:
                return "arm64";
            case 0x014C:
                return "x86";
            default:
                return "processor " + std::to_string(machine);
        }
    }

    // All of the file from the place of a loaded address to the end of its section.
    [[nodiscard]] ByteView at(std::uint64_t address) const {
        for (const Section& section : sections_) {
            const std::uint64_t size = std::max(section.size, section.stored);
            if (address < section.address || address - section.address >= size) continue;
            const std::uint64_t inside = address - section.address;
            if (inside >= section.stored) break;
            return file_.part(section.at + inside, section.stored - inside);
        }
        throw FormatError("address " + std::to_string(address) + " is in none of its sections");
    }

    void read_exports(const Table& table, Slice& slice) const {
        const ByteView directory = at(table.address);
        const std::uint32_t count = directory.u32(24);
        if (count == 0) return;
        const ByteView names = at(directory.u32(32));
        ReadingLimits limits;
        for (std::uint32_t i = 0; i < count; ++i) limits.add_export(slice, at(names.u32(4ULL * i)), 0);
    }

    // A tree of type, id and language; entries point on within the section.
    void read_resources(const Table& table, LibraryFile& result) {
        const ByteView tree = at(table.address);
        for_entries(tree, 0, [&](std::uint32_t name, std::uint32_t type) {
            if (!(name & kFlag) || !(type & kFlag) || !is_pipl(tree, name & ~kFlag)) return;
            for_entries(tree, type & ~kFlag, [&](std::uint32_t, std::uint32_t id) {
                if (!(id & kFlag)) return;
                for_entries(tree, id & ~kFlag, [&](std::uint32_t, std::uint32_t leaf) {
                    if (leaf & kFlag) return;
                    add_property_resource(result.property_resources,
                                          at(tree.u32(leaf)).bytes(0, tree.u32(leaf + 4ULL)));
                });
            });
        });
    }

    static constexpr std::uint32_t kFlag = 0x80000000;  // an offset: of a name, or of another directory

    template <class Visit>
    void for_entries(const ByteView& tree, std::uint32_t directory, Visit&& visit) {
        const std::uint32_t count = tree.u16(directory + 12ULL) + std::uint32_t{tree.u16(directory + 14ULL)};
        for (std::uint32_t i = 0; i < count; ++i) {
            if (++entries_ > kMostEntries) throw FormatError("it has too many resources");
            const std::uint64_t at = directory + 16ULL + 8ULL * i;
            visit(tree.u32(at), tree.u32(at + 4));
        }
    }

    // Resource compilers write the name in capitals, others as it is spelt.
    static bool is_pipl(const ByteView& tree, std::uint64_t at) {
        if (tree.u16(at) != 4) return false;
        for (std::uint64_t i = 0; i < 4; ++i) {
            const std::uint16_t letter = tree.u16(at + 2 + 2 * i);
            if (letter > 127 || std::toupper(letter) != "PIPL"[i]) return false;
        }
        return true;
    }

    ByteView file_;
    std::vector<Section> sections_;
    std::uint32_t entries_ = 0;
};

}  // namespace

LibraryFile read_windows_library(const ByteView& file) { return Reader(file).read(); }

}  // namespace zam::host
