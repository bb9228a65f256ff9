#pragma once
// Bytes put down one after the other, in either order.
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace zam::resource {

enum class Order { little, big };

class ByteWriter {
  public:
    explicit ByteWriter(Order order) : order_(order) {}

    void u8(std::uint8_t value) { bytes_.push_back(value); }
    void u16(std::uint16_t value) { number(value, 2); }
    void u32(std::uint32_t value) { number(value, 4); }
    // A four-character code is a number to those who read it.
    void code(std::string_view four) {
        std::uint32_t value = 0;
        for (const char c : four) value = value << 8 | static_cast<std::uint8_t>(c);
        u32(value);
    }
    void text(std::string_view text) { bytes_.insert(bytes_.end(), text.begin(), text.end()); }
    void append(const std::vector<std::uint8_t>& more) {
        bytes_.insert(bytes_.end(), more.begin(), more.end());
    }
    void zeros(std::size_t count) { bytes_.resize(bytes_.size() + count); }
    void pad(std::size_t multiple) { zeros((multiple - bytes_.size() % multiple) % multiple); }

    [[nodiscard]] const std::vector<std::uint8_t>& bytes() const { return bytes_; }

  private:
    void number(std::uint32_t value, int width) {
        for (int i = 0; i < width; ++i) {
            const int shift = 8 * (order_ == Order::little ? i : width - 1 - i);
            bytes_.push_back(static_cast<std::uint8_t>(value >> shift));
        }
    }
    Order order_;
    std::vector<std::uint8_t> bytes_;
};

}  // namespace zam::resource
