#pragma once
// Images that an effect reads and writes. Rows are padded and start off 16-byte boundaries, pixels start as a
// pattern that no effect draws, and guard bytes before, between and after the rows show stray writes.
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "host/runner/session.h"
#include "host/watch/ledger.h"
#include "hostapi/effect.h"

namespace zam::host {

class World {
  public:
    // Throws std::bad_alloc. `fill` is the byte that pixels start with.
    void prepare(int width, int height, bool deep, const PF_RationalScale& aspect, std::uint8_t fill,
                 const RowLayout& layout = {});

    // As the interface shows it; the world itself goes by its own geometry, whatever becomes of that copy.
    [[nodiscard]] PF_EffectWorld interface_world(bool writeable) const;

    [[nodiscard]] int width() const { return width_; }
    [[nodiscard]] int height() const { return height_; }
    [[nodiscard]] bool deep() const { return deep_; }
    [[nodiscard]] int pixel_bytes() const { return deep_ ? 8 : 4; }
    [[nodiscard]] std::uint8_t* row(int y) const {
        return first_row_ + static_cast<std::ptrdiff_t>(y) * row_bytes_;
    }

    // Reports stray writes, once, as "... past the end of output row 3".
    void check(const char* name, Ledger& ledger);
    // All pixels, four codes each.
    [[nodiscard]] std::vector<std::uint16_t> codes() const;

  private:
    [[nodiscard]] std::size_t used_bytes() const {
        return static_cast<std::size_t>(width_) * static_cast<std::size_t>(pixel_bytes());
    }
    int width_ = 0, height_ = 0;
    bool deep_ = false;
    PF_RationalScale aspect_{1, 1};
    std::ptrdiff_t row_bytes_ = 0;            // from row to row; negative when the last row lies first
    std::size_t stride_ = 0, capacity_ = 0;   // its size, and that of the memory
    std::unique_ptr<std::uint8_t[]> memory_;  // guard, rows with what is between them, guard
    std::uint8_t* guard_after_ = nullptr;
    std::uint8_t* first_row_ = nullptr;
};

constexpr std::uint8_t kInputByte = 0x40;

}  // namespace zam::host
