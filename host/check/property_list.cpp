#include "host/check/property_list.h"

namespace zam::host {
namespace {

constexpr std::uint32_t kMostProperties = 1000;
constexpr std::size_t kLongestText = 255;  // as much as a count of one byte may say

// Where properties begin: behind the format's version and the count, and on Windows a word before them.
struct Layout {
    std::uint64_t head;
    ByteOrder order;
};
constexpr Layout kLayouts[] = {
    {2, ByteOrder::little}, {0, ByteOrder::big}, {0, ByteOrder::little}, {2, ByteOrder::big}};

bool is_code(const std::string& code) {
    for (const char c : code)
        if (c < ' ' || c > '~') return false;
    return true;
}

// The order shows in the vendor code of the first property, which all known lists begin with.
Layout layout_of(std::span<const std::uint8_t> bytes) {
    for (const Layout& layout : kLayouts) {
        const ByteView view(bytes, layout.order);
        if (view.size() >= layout.head + 12 && view.code(layout.head + 8) == "8BIM") return layout;
    }
    throw FormatError("its first property has no vendor code 8BIM");
}

}  // namespace

const Property* PropertyList::find(const std::string& key) const {
    for (const Property& property : properties)
        if (property.key == key) return &property;
    return nullptr;
}

std::optional<std::uint32_t> PropertyList::number(const std::string& key) const {
    const Property* property = find(key);
    if (!property || property->data.size() < 4) return std::nullopt;
    return ByteView(property->data, order).u32(0);
}

std::optional<std::string> PropertyList::counted_text(const std::string& key) const {
    const Property* property = find(key);
    if (!property || property->data.empty() || property->data[0] >= property->data.size())
        return std::nullopt;
    return std::string(property->data.begin() + 1, property->data.begin() + 1 + property->data[0]);
}

std::optional<std::string> PropertyList::terminated_text(const std::string& key) const {
    const Property* property = find(key);
    if (!property) return std::nullopt;
    const std::string text = ByteView(property->data, order).text(0, kLongestText + 1);
    if (text.size() >= property->data.size() || text.size() > kLongestText) return std::nullopt;
    return text;
}

std::optional<std::string> PropertyList::code(const std::string& key) const {
    const Property* property = find(key);
    if (!property || property->data.size() < 4) return std::nullopt;
    return ByteView(property->data, order).code(0);
}

PropertyList read_property_list(std::span<const std::uint8_t> bytes) {
    const Layout layout = layout_of(bytes);
    const ByteView view(bytes, layout.order);
    PropertyList list;
    list.order = layout.order;
    const std::uint32_t count = view.u32(layout.head + 4);
    if (count > kMostProperties) throw FormatError("it announces " + std::to_string(count) + " properties");
    std::uint64_t at = layout.head + 8;
    for (std::uint32_t i = 0; i < count; ++i) {
        try {
            Property property;
            property.vendor = view.code(at);
            property.key = view.code(at + 4);
            property.id = view.u32(at + 8);
            const std::uint32_t length = view.u32(at + 12);
            if (!is_code(property.vendor) || !is_code(property.key))
                throw FormatError("no code where one belongs");
            const auto data = view.bytes(at + 16, length);
            property.data.assign(data.begin(), data.end());
            list.properties.push_back(std::move(property));
            // Lengths with and without their padding are met on both platforms.
            at += 16 + (std::uint64_t{length} + 3) / 4 * 4;
        } catch (const FormatError& error) {
            throw FormatError("property " + std::to_string(i + 1) + " of " + std::to_string(count) + ": " +
                              error.what());
        }
    }
    return list;
}

}  // namespace zam::host
