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

// The list that a system's file has to hold, a property a line or two.
Bytes expected_list(const std::string& system) {
    std::ifstream file("tests/golden/property_list." + system + ".hex");
    return from_hex(std::string(std::istreambuf_iterator<char>(file), {}));
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

// Data offset 256, map offset 552, lengths 296 and 50; and the map: a copy of these, one type, one resource.
const char kMacosHeader[] = "00 00 01 00 00 00 02 28 00 00 01 28 00 00 00 32";
const char kMacosMap[] =
    " 00 00 00 00 00 00 00 00 00 1C 00 32 00 00 50 69 50 4C 00 00 00 0A"
    " 3E 80 FF FF 00 00 00 00 00 00 00 00";

TEST(PropertyResource, IsWrittenByteForByte) {
    EXPECT_EQ(windows_list(), expected_list("windows"));
    EXPECT_EQ(expected_list("windows").size(), 262U);
    Bytes file = from_hex(kMacosHeader);
    file.resize(256);
    for (const Bytes& part :
         {from_hex("00 00 01 24"), expected_list("macos"), from_hex(kMacosHeader), from_hex(kMacosMap)})
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
