#pragma once
// A plug-in's property list (PiPL), as a host reads it before it loads the code.
#include <optional>
#include <string>
#include <vector>

#include "host/check/bytes.h"

namespace zam::host {

struct Property {
    std::string vendor, key;  // four-character codes
    std::uint32_t id = 0;
    std::vector<std::uint8_t> data;  // with what padding its length counts
};

struct PropertyList {
    ByteOrder order = ByteOrder::little;  // little: written for Windows
    std::vector<Property> properties;

    [[nodiscard]] const Property* find(const std::string& key) const;  // the first; null when there is none
    // A property's value; none when it is not there or too short for one. A text has at most 255 bytes.
    [[nodiscard]] std::optional<std::uint32_t> number(const std::string& key) const;
    [[nodiscard]] std::optional<std::string> counted_text(const std::string& key) const;
    [[nodiscard]] std::optional<std::string> terminated_text(const std::string& key) const;
    [[nodiscard]] std::optional<std::string> code(const std::string& key) const;
};

// Of either platform: the codes' byte order tells which. Throws FormatError.
[[nodiscard]] PropertyList read_property_list(std::span<const std::uint8_t> bytes);

}  // namespace zam::host
