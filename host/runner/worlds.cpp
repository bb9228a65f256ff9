#include "host/runner/worlds.h"

#include <algorithm>
#include <cstring>

namespace zam::host {
namespace {

// The guard before is no multiple of 16, so that rows start off such boundaries; 8 bytes keep a deep pixel
// whole.
constexpr std::size_t kGuardBefore = 72, kGuardAfter = 72;
constexpr std::uint8_t kGuardByte = 0xC3;

bool damaged(std::uint8_t* from, std::size_t bytes) {
    const bool found = std::any_of(from, from + bytes, [](std::uint8_t byte) { return byte != kGuardByte; });
    if (found) std::memset(from, kGuardByte, bytes);
    return found;
}

}  // namespace

void World::prepare(int width, int height, bool deep, const PF_RationalScale& aspect, std::uint8_t fill,
                    const RowLayout& layout) {
    width_ = width;
    height_ = height;
    deep_ = deep;
    aspect_ = aspect;
    stride_ = (used_bytes() + static_cast<std::size_t>(layout.padding) + 7) / 8 * 8;
    const std::size_t rows = stride_ * static_cast<std::size_t>(height);
    const std::size_t bytes = kGuardBefore + rows + kGuardAfter;
    if (bytes > capacity_) {
        memory_.reset();
        capacity_ = 0;
        memory_.reset(new std::uint8_t[bytes]);
        capacity_ = bytes;
    }
    row_bytes_ = static_cast<std::ptrdiff_t>(stride_) * (layout.bottom_up ? -1 : 1);
    first_row_ = memory_.get() + kGuardBefore + (layout.bottom_up && height > 0 ? rows - stride_ : 0);
    guard_after_ = memory_.get() + kGuardBefore + rows;
    std::memset(memory_.get(), kGuardByte, kGuardBefore);
    for (int y = 0; y < height; ++y) {
        std::memset(row(y), fill, used_bytes());
        std::memset(row(y) + used_bytes(), kGuardByte, stride_ - used_bytes());
    }
    std::memset(guard_after_, kGuardByte, kGuardAfter);
}

PF_EffectWorld World::interface_world(bool writeable) const {
    PF_EffectWorld world{};
    world.world_flags = (deep_ ? PF_WorldFlag_DEEP : 0) | (writeable ? PF_WorldFlag_WRITEABLE : 0);
    world.data = reinterpret_cast<PF_PixelPtr>(first_row_);
    world.rowbytes = static_cast<A_long>(row_bytes_);
    world.width = width_;
    world.height = height_;
    world.extent_hint = {0, 0, width_, height_};
    world.pix_aspect_ratio = aspect_;
    return world;
}

void World::check(const char* name, Ledger& ledger) {
    if (!memory_) return;
    const std::string who = std::string(ledger.command()) + " wrote ";
    const std::string image(name);
    if (damaged(memory_.get(), kGuardBefore)) ledger.report(who + "before the rows of the " + image);
    for (int y = 0; y < height_; ++y) {
        if (damaged(row(y) + used_bytes(), stride_ - used_bytes())) {
            ledger.report(who + "past the end of " + image + " row " + std::to_string(y));
        }
    }
    if (damaged(guard_after_, kGuardAfter)) ledger.report(who + "after the rows of the " + image);
}

std::vector<std::uint16_t> World::codes() const {
    const std::size_t per_row = static_cast<std::size_t>(width_) * 4;
    std::vector<std::uint16_t> all(per_row * static_cast<std::size_t>(height_));
    for (int y = 0; y < height_; ++y) {
        std::uint16_t* to = all.data() + per_row * static_cast<std::size_t>(y);
        if (deep_) {
            std::memcpy(to, row(y), per_row * sizeof *to);
        } else {
            std::copy_n(row(y), per_row, to);
        }
    }
    return all;
}

}  // namespace zam::host
