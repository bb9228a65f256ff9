// The property resource: its bytes, and that both files say what the loaded effect reports.
#include <fstream>
#include <iterator>
#include <sstream>

#include "host/check/library_file.h"
#include "host/check/property_list.h"
#include "tests/contract/zam_fixture.h"

namespace zam::test {
namespace {

using Bytes = std::vector<std::uint8_t>;

// Spaces and line breaks between digits do not count.
Bytes from_hex(const std::string& text) {
    Bytes bytes;
    std::istringstream words(text);
    for (std::string word; words >> word;)
        bytes.push_back(static_cast<std::uint8_t>(std::stoul(word, nullptr, 16)));
    return bytes;
}

Bytes file_bytes(const char* path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// The words between BEGIN and END of a resource script, as a resource compiler takes them.
Bytes windows_list() {
    std::ifstream file(ZAM_WINDOWS_RESOURCE);
    Bytes bytes;
    bool inside = false;
    for (std::string word; file >> word;) {
        if (word == "END") break;
        if (inside) {
            const auto value = std::stoul(word, nullptr, 16);
            bytes.push_back(static_cast<std::uint8_t>(value));
            bytes.push_back(static_cast<std::uint8_t>(value >> 8));
        }
        inside = inside || word == "BEGIN";
    }
    return bytes;
}

const char kWindowsBytes[] =
    "01 00 00 00 00 00 0C 00 00 00"
    " 4D 49 42 38 64 6E 69 6B 00 00 00 00 04 00 00 00 54 4B 46 65"
    " 4D 49 42 38 65 6D 61 6E 00 00 00 00 04 00 00 00 03 5A 61 6D"
    " 4D 49 42 38 67 74 61 63 00 00 00 00 04 00 00 00 03 5A 61 6D"
    " 4D 49 42 38 34 36 36 38 00 00 00 00 10 00 00 00"
    " 45 6E 74 72 79 50 6F 69 6E 74 46 75 6E 63 00 00"
    " 4D 49 42 38 52 56 50 65 00 00 00 00 04 00 00 00 02 00 00 00"
    " 4D 49 42 38 52 56 53 65 00 00 00 00 04 00 00 00 0D 00 1D 00"
    " 4D 49 42 38 52 45 56 65 00 00 00 00 04 00 00 00 00 8E 08 00"
    " 4D 49 42 38 46 4E 49 65 00 00 00 00 04 00 00 00 00 00 00 00"
    " 4D 49 42 38 4F 4C 47 65 00 00 00 00 04 00 00 00 01 00 00 06"
    " 4D 49 42 38 32 4C 47 65 00 00 00 00 04 00 00 00 06 00 00 00"
    " 4D 49 42 38 41 4E 4D 65 00 00 00 00 04 00 00 00 03 5A 61 6D"
    " 4D 49 42 38 4C 46 65 61 00 00 00 00 04 00 00 00 00 00 00 00";

const char kMacosBytes[] =
    "00 00 00 00 00 00 00 0D"
    " 38 42 49 4D 6B 69 6E 64 00 00 00 00 00 00 00 04 65 46 4B 54"
    " 38 42 49 4D 6E 61 6D 65 00 00 00 00 00 00 00 04 03 5A 61 6D"
    " 38 42 49 4D 63 61 74 67 00 00 00 00 00 00 00 04 03 5A 61 6D"
    " 38 42 49 4D 6D 69 36 34 00 00 00 00 00 00 00 0F"
    " 0E 45 6E 74 72 79 50 6F 69 6E 74 46 75 6E 63 00"
    " 38 42 49 4D 6D 61 36 34 00 00 00 00 00 00 00 0F"
    " 0E 45 6E 74 72 79 50 6F 69 6E 74 46 75 6E 63 00"
    " 38 42 49 4D 65 50 56 52 00 00 00 00 00 00 00 04 00 02 00 00"
    " 38 42 49 4D 65 53 56 52 00 00 00 00 00 00 00 04 00 0D 00 1D"
    " 38 42 49 4D 65 56 45 52 00 00 00 00 00 00 00 04 00 08 8E 00"
    " 38 42 49 4D 65 49 4E 46 00 00 00 00 00 00 00 02 00 00 00 00"
    " 38 42 49 4D 65 47 4C 4F 00 00 00 00 00 00 00 04 06 00 00 01"
    " 38 42 49 4D 65 47 4C 32 00 00 00 00 00 00 00 04 00 00 00 06"
    " 38 42 49 4D 65 4D 4E 41 00 00 00 00 00 00 00 04 03 5A 61 6D"
    " 38 42 49 4D 61 65 46 4C 00 00 00 00 00 00 00 04 00 00 00 00";

// Data offset 256, map offset 552, lengths 296 and 50; and the map: a copy of these, one type, one resource.
const char kMacosHeader[] = "00 00 01 00 00 00 02 28 00 00 01 28 00 00 00 32";
const char kMacosMap[] =
    " 00 00 00 00 00 00 00 00 00 1C 00 32 00 00 50 69 50 4C 00 00 00 0A"
    " 3E 80 FF FF 00 00 00 00 00 00 00 00";

TEST(PropertyResource, IsWrittenByteForByte) {
    EXPECT_EQ(windows_list(), from_hex(kWindowsBytes));
    EXPECT_EQ(from_hex(kWindowsBytes).size(), 262U);
    Bytes file = from_hex(kMacosHeader);
    file.resize(256);
    for (const Bytes& part :
         {from_hex("00 00 01 24"), from_hex(kMacosBytes), from_hex(kMacosHeader), from_hex(kMacosMap)})
        file.insert(file.end(), part.begin(), part.end());
    EXPECT_EQ(file.size(), 602U);
    EXPECT_EQ(file_bytes(ZAM_MACOS_RESOURCE), file);
}

TEST(PropertyResource, SaysWhatTheEffectReports) {
    Composition comp = make_composition(16, 16);
    Session session(zam_plugin(), comp, {});
    ASSERT_TRUE(session.send(PF_Cmd_GLOBAL_SETUP).ok());
    const PF_OutData out = session.out_data();
    const std::string about = session.send(PF_Cmd_ABOUT).message;
    const auto macos = host::read_resource_file(file_bytes(ZAM_MACOS_RESOURCE));
    ASSERT_EQ(macos.size(), 1U);
    const std::pair<std::string, host::PropertyList> lists[] = {
        {"8664", host::read_property_list(windows_list())}, {"mi64", host::read_property_list(macos[0])}};
    for (const auto& [entry, list] : lists) {
        SCOPED_TRACE(entry);
        EXPECT_EQ(list.code("kind"), "eFKT");
        EXPECT_EQ(list.number("eVER"), out.my_version);
        EXPECT_EQ(list.number("eGLO"), static_cast<std::uint32_t>(out.out_flags));
        EXPECT_EQ(list.number("eGL2"), static_cast<std::uint32_t>(out.out_flags2));
        for (const char* name : {"name", "catg", "eMNA"}) EXPECT_EQ(list.counted_text(name), "Zam") << name;
        EXPECT_EQ(entry == "8664" ? list.terminated_text(entry) : list.counted_text(entry), "EntryPointFunc");
        EXPECT_EQ(list.find("ma64") != nullptr, entry == "mi64");
        for (const host::Property& property : list.properties) {
            EXPECT_EQ(property.vendor, "8BIM");
            EXPECT_EQ(property.id, 0U);
        }
        EXPECT_TRUE(about.starts_with(*list.counted_text("name") + ", v"));
    }
}

}  // namespace
}  // namespace zam::test
