// The readers of plug-in files: what they find, and that no damage to a file leads them out of it.
#include "host/check/library_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

#include "host/check/property_list.h"
#include "tests/unit/host/check/small_files.h"

namespace zam::host {
namespace {

using ::testing::ElementsAre;

TEST(PropertyLists, AreReadInEveryFormThatIsMet) {
    for (const ByteOrder order : {ByteOrder::little, ByteOrder::big})
        for (const bool word_before : {false, true})
            for (const bool padded : {false, true}) {
                const bool little = order == ByteOrder::little;
                const PropertyList list = read_property_list(small_list({order, word_before, padded}));
                EXPECT_EQ(list.order, order);
                EXPECT_EQ(list.properties.size(), little ? 8U : 9U);
                EXPECT_EQ(list.code("kind"), "eFKT");
                EXPECT_EQ(list.counted_text("name"), "Glass");
                EXPECT_EQ(list.terminated_text("8664"), little ? std::optional("Entry") : std::nullopt);
                EXPECT_EQ(list.number("eVER"), little ? 0x04030201 : 0x01020304);
            }
}

TEST(PropertyLists, AreRefusedWhenTheyContradictThemselves) {
    Bytes list = small_list({});
    list[6] = 200;  // more properties than there are
    EXPECT_THROW((void)read_property_list(list), FormatError);
    list[6] = 8;
    list[0x16] = 0xFF;
    list[0x19] = 0xFF;  // a length near 4 GiB
    EXPECT_THROW((void)read_property_list(list), FormatError);
    PropertyList cut;
    cut.properties.push_back({"8BIM", "name", 0, {9, 'Z'}});
    cut.properties.push_back({"8BIM", "8664", 0, {'M', 'a'}});
    cut.properties.push_back({"8BIM", "eINF", 0, {0, 0}});
    EXPECT_EQ(cut.counted_text("name"), std::nullopt);
    EXPECT_EQ(cut.terminated_text("8664"), std::nullopt);
    EXPECT_EQ(cut.number("eINF"), std::nullopt);
}

TEST(LibraryFiles, TellTheirProcessorsExportsAndProperties) {
    const LibraryFile windows = read_library(small_windows_library());
    EXPECT_EQ(windows.format, Format::windows);
    ASSERT_EQ(windows.slices.size(), 1U);
    EXPECT_TRUE(windows.slices[0].library);
    EXPECT_EQ(windows.slices[0].processor, "x86-64");
    EXPECT_THAT(windows.slices[0].exports, ElementsAre("Entry", "Other"));
    EXPECT_THAT(windows.property_resources, ElementsAre(small_list({})));

    const LibraryFile linux_file = read_library(small_linux_library());
    EXPECT_EQ(linux_file.format, Format::linux_);
    ASSERT_EQ(linux_file.slices.size(), 1U);
    EXPECT_TRUE(linux_file.slices[0].library);
    EXPECT_THAT(linux_file.slices[0].exports, ElementsAre("EntryPointFunc"));

    const LibraryFile macos = read_library(small_macos_library());
    EXPECT_EQ(macos.format, Format::macos);
    ASSERT_EQ(macos.slices.size(), 2U);
    EXPECT_EQ(macos.slices[0].processor, "x86-64");
    EXPECT_EQ(macos.slices[1].processor, "arm64");
    EXPECT_TRUE(macos.slices[1].library);
    EXPECT_THAT(macos.slices[1].exports, ElementsAre("Entry"));
    EXPECT_THAT(read_resource_file(small_resource_file(small_list(kMacosList))),
                ElementsAre(small_list(kMacosList)));
}

// Every cut, and every byte replaced by each of a few: an answer or a FormatError, and nothing else. The
// sanitizers see reads outside.
TEST(LibraryFiles, NoDamageLeadsOutOfAFile) {
    const auto survive = [](const Bytes& bytes, const std::function<void(const Bytes&)>& read) {
        try {
            read(bytes);
        } catch (const FormatError&) {
        }
    };
    const std::pair<Bytes, std::function<void(const Bytes&)>> files[] = {
        {small_windows_library(), [](const Bytes& b) { (void)read_library(b); }},
        {small_macos_library(), [](const Bytes& b) { (void)read_library(b); }},
        {small_linux_library(), [](const Bytes& b) { (void)read_library(b); }},
        {small_resource_file(small_list(kMacosList)), [](const Bytes& b) { (void)read_resource_file(b); }},
        {small_list({}), [](const Bytes& b) { (void)read_property_list(b); }},
        {small_list(kMacosList), [](const Bytes& b) { (void)read_property_list(b); }},
    };
    for (const auto& [whole, read] : files) {
        for (std::size_t size = 0; size < whole.size(); ++size)
            survive(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)), read);
        for (std::size_t at = 0; at < whole.size(); ++at)
            for (const int byte : {0x00, 0x01, 0x7F, 0x80, 0xFF}) {
                Bytes damaged = whole;
                damaged[at] = static_cast<std::uint8_t>(byte);
                survive(damaged, read);
            }
    }
}

// Tables that lie over each other, whose sum the size of the file does not bound.
TEST(LibraryFiles, AreNotReadBeyondBounds) {
    FileMaker elf(ByteOrder::little);  // with a second table, of the same symbols
    elf.bytes = small_linux_library();
    elf.put({{60, 4, 2}, {0x1B4, 11, 4}, {0x1C8, 0x60, 8}, {0x1D0, 72, 8}, {0x1D8, 2, 8}, {0x1E8, 0, 8}});
    EXPECT_THAT(read_library(elf.bytes).slices[0].exports, ElementsAre("EntryPointFunc"));

    constexpr std::uint32_t kSymbols = 60000;
    FileMaker macos(ByteOrder::little);
    macos.bytes = small_macos_slice(7);
    macos.put({{40, 0x100, 4}, {44, kSymbols, 4}});  // all with the name of the first
    for (std::size_t i = 0; i < kSymbols; ++i)
        macos.put({{0x100 + 16 * i, 1, 4}, {0x104 + 16 * i, 0x0F, 1}, {0x108 + 16 * i, 0, 8}});
    const Bytes slice = macos.bytes;
    EXPECT_NO_THROW((void)read_library(slice));
    FileMaker fat(ByteOrder::big);
    fat.put({{0, 0xCAFEBABE, 4}, {4, 2, 4}, {16, 0x40, 4}, {36, 0x40, 4}});
    fat.put({{20, slice.size(), 4}, {40, slice.size(), 4}});
    fat.put(0x40, slice);
    EXPECT_THROW((void)read_library(fat.bytes), FormatError);

    FileMaker windows(ByteOrder::little);
    windows.bytes = small_windows_library();
    windows.put({{0x46, 2000, 2}, {100000, 0, 1}});
    EXPECT_THROW((void)read_library(windows.bytes), FormatError);
    EXPECT_THROW((void)read_resource_file(small_resource_file(Bytes(2 << 20))), FormatError);
}

}  // namespace
}  // namespace zam::host
