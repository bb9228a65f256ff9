#pragma once
// Reading of files that nobody vouches for: every access is checked, and what lies outside is a FormatError.
#include <cstddef>
#include <cstdint>
#include <span>
#include <stdexcept>
#include <string>

namespace zam::host {

// A file that is cut short or contradicts itself; the text says how.
struct FormatError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

enum class ByteOrder { little, big };

class ByteView {
  public:
    ByteView(std::span<const std::uint8_t> bytes, ByteOrder order) : bytes_(bytes), order_(order) {}

    [[nodiscard]] std::uint64_t size() const { return bytes_.size(); }
    [[nodiscard]] ByteOrder order() const { return order_; }
    [[nodiscard]] std::uint8_t u8(std::uint64_t at) const { return static_cast<std::uint8_t>(number(at, 1)); }
    [[nodiscard]] std::uint16_t u16(std::uint64_t at) const {
        return static_cast<std::uint16_t>(number(at, 2));
    }
    [[nodiscard]] std::uint32_t u32(std::uint64_t at) const {
        return static_cast<std::uint32_t>(number(at, 4));
    }
    [[nodiscard]] std::uint64_t u64(std::uint64_t at) const { return number(at, 8); }

    [[nodiscard]] std::span<const std::uint8_t> bytes(std::uint64_t at, std::uint64_t count) const {
        if (at > bytes_.size() || count > bytes_.size() - at)
            throw FormatError("it ends before byte " + std::to_string(at) + " + " + std::to_string(count));
        return bytes_.subspan(static_cast<std::size_t>(at), static_cast<std::size_t>(count));
    }
    [[nodiscard]] ByteView part(std::uint64_t at, std::uint64_t count) const {
        return {bytes(at, count), order_};
    }
    [[nodiscard]] ByteView from(std::uint64_t at) const { return part(at, at > size() ? 0 : size() - at); }
    // A zero-terminated text; one that is longer than `longest` or has no end is cut.
    [[nodiscard]] std::string text(std::uint64_t at, std::size_t longest) const {
        std::string result;
        for (; at < size() && result.size() < longest && bytes_[static_cast<std::size_t>(at)]; ++at)
            result += static_cast<char>(bytes_[static_cast<std::size_t>(at)]);
        return result;
    }
    // A four-character code as it is read aloud, whatever the order.
    [[nodiscard]] std::string code(std::uint64_t at) const {
        const std::uint32_t value = u32(at);
        std::string result;
        for (int shift = 24; shift >= 0; shift -= 8) result += static_cast<char>(value >> shift & 0xFF);
        return result;
    }

  private:
    [[nodiscard]] std::uint64_t number(std::uint64_t at, std::size_t width) const {
        const auto from = bytes(at, width);
        std::uint64_t value = 0;
        for (std::size_t i = 0; i < width; ++i)
            value = value << 8 | from[order_ == ByteOrder::big ? i : width - 1 - i];
        return value;
    }
    std::span<const std::uint8_t> bytes_;
    ByteOrder order_;
};

}  // namespace zam::host
