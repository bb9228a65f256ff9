#include "effect/resource/property_list.h"

#include <string_view>

#include "effect/entry/version.h"
#include "effect/resource/byte_writer.h"

namespace zam::resource {
namespace {

constexpr std::string_view kVendor = "8BIM";
constexpr std::string_view kEffectKind = "eFKT";
constexpr std::uint16_t kListVersion = 2;

static_assert(sizeof kEffectName - 1 <= 31 && sizeof kMatchName - 1 <= 31 && sizeof kCategory - 1 <= 31,
              "names have at most 31 characters");

// On Windows numbers are little-endian and a property's length counts its padding; on macOS they are big-endian and
// it does not.
class ListWriter {
  public:
    explicit ListWriter(Platform platform) : platform_(platform), body_(order()) {}

    void code(std::string_view key, std::string_view value) {
        ByteWriter data(order());
        data.code(value);
        add(key, data);
    }
    void number(std::string_view key, std::uint32_t value) {
        ByteWriter data(order());
        data.u32(value);
        add(key, data);
    }
    void version(std::string_view key, std::uint16_t major, std::uint16_t minor) {
        ByteWriter data(order());
        data.u16(major);
        data.u16(minor);
        add(key, data);
    }
    // The one property whose width differs: 16 bits on macOS.
    void info_flags(std::string_view key) {
        ByteWriter data(order());
        platform_ == Platform::windows ? data.u32(0) : data.u16(0);
        add(key, data);
    }
    void counted(std::string_view key, std::string_view text) {
        ByteWriter data(order());
        data.u8(static_cast<std::uint8_t>(text.size()));
        data.text(text);
        add(key, data);
    }
    void terminated(std::string_view key, std::string_view text) {
        ByteWriter data(order());
        data.text(text);
        data.u8(0);
        add(key, data);
    }

    [[nodiscard]] Bytes finish() const {
        ByteWriter all(order());
        if (platform_ == Platform::windows) all.u16(1);
        all.u32(0);  // version of the list's format
        all.u32(count_);
        all.append(body_.bytes());
        return all.bytes();
    }

  private:
    [[nodiscard]] Order order() const { return platform_ == Platform::windows ? Order::little : Order::big; }

    void add(std::string_view key, ByteWriter& data) {
        const std::size_t bare = data.bytes().size();
        data.pad(4);
        body_.code(kVendor);
        body_.code(key);
        body_.u32(0);  // property id
        body_.u32(static_cast<std::uint32_t>(platform_ == Platform::windows ? data.bytes().size() : bare));
        body_.append(data.bytes());
        ++count_;
    }

    Platform platform_;
    ByteWriter body_;
    std::uint32_t count_ = 0;
};

}  // namespace

// The order is the one that every host has met.
Bytes property_list(Platform platform) {
    ListWriter list(platform);
    list.code("kind", kEffectKind);
    list.counted("name", kEffectName);
    list.counted("catg", kCategory);
    if (platform == Platform::windows) {
        list.terminated("8664", kEntryPoint);
    } else {
        list.counted("mi64", kEntryPoint);
        list.counted("ma64", kEntryPoint);
    }
    list.version("ePVR", kListVersion, 0);
    list.version("eSVR", PF_AE_PLUG_IN_VERSION, PF_AE_PLUG_IN_SUBVERS);
    list.number("eVER", kVersionWord);
    list.info_flags("eINF");
    list.number("eGLO", static_cast<std::uint32_t>(kOutFlags));
    list.number("eGL2", static_cast<std::uint32_t>(kOutFlags2));
    list.counted("eMNA", kMatchName);
    list.number("aeFL", 0);
    return list.finish();
}

}  // namespace zam::resource
