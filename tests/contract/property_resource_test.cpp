// The property resource, byte for byte.
#include <gtest/gtest.h>

#include <cstdint>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

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

std::string text_of(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// The list that a system's file has to hold, a property a line or two.
Bytes expected_list(const std::string& system) {
    return from_hex(text_of("tests/golden/property_list." + system + ".hex"));
}

// The words between BEGIN and END of a resource script, as a resource compiler takes them.
Bytes windows_list() {
    std::ifstream file(ZAM_WINDOWS_RESOURCE);
    std::string word;
    while (file >> word && word != "BEGIN") {
    }
    Bytes bytes;
    while (file >> word && word != "END") {
        const auto value = std::stoul(word, nullptr, 16);
        for (const auto byte : {value, value >> 8}) bytes.push_back(static_cast<std::uint8_t>(byte));
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
    Bytes file = from_hex(kMacosHeader);
    file.resize(256);
    for (const Bytes& part :
         {from_hex("00 00 01 24"), expected_list("macos"), from_hex(kMacosHeader), from_hex(kMacosMap)})
        file.insert(file.end(), part.begin(), part.end());
    const std::string written = text_of(ZAM_MACOS_RESOURCE);
    EXPECT_EQ(Bytes(written.begin(), written.end()), file);
}

}  // namespace
}  // namespace zam::test
