#include "io/images/deflate.h"

#include <isa-l/igzip_lib.h>

#include <algorithm>
#include <stdexcept>
#include <vector>

namespace zam::io {
namespace {

constexpr std::size_t kPiece = 256 * 1024;

// The library's level 1 goes on from a stream's first byte with a register that it never loaded and that holds the
// stream's address, and hashes that: in some 1 of 3000 runs the same bytes would become others. It drops the register when
// the first byte is all that it may take, which is when it is given one byte more than it looks ahead.
constexpr std::size_t kBeginning = ISAL_LOOK_AHEAD + 1;

}  // namespace

struct Deflater::State {
    isal_zstream stream{};
    std::vector<std::uint8_t> level = std::vector<std::uint8_t>(ISAL_DEF_LVL1_DEFAULT);
    std::vector<std::uint8_t> piece = std::vector<std::uint8_t>(kPiece);
    std::vector<std::uint8_t> beginning;  // of the stream, until there are so many bytes of it

    State() { begin(); }

    void begin() {
        isal_deflate_init(&stream);
        stream.level = 1;
        stream.level_buf = level.data();
        stream.level_buf_size = static_cast<std::uint32_t>(level.size());
        stream.gzip_flag = IGZIP_ZLIB;
        beginning.clear();
        make_room();
    }

    void make_room() {
        stream.next_out = piece.data();
        stream.avail_out = static_cast<std::uint32_t>(piece.size());
    }

    [[nodiscard]] std::span<const std::uint8_t> made() const {
        return {piece.data(), piece.size() - stream.avail_out};
    }

    bool compress(std::span<const std::uint8_t> bytes, bool last, const Out& out);
};

Deflater::Deflater() : state_(std::make_unique<State>()) {}
Deflater::~Deflater() = default;

bool Deflater::add(std::span<const std::uint8_t> bytes, bool last, const Out& out) {
    std::vector<std::uint8_t>& beginning = state_->beginning;
    if (beginning.size() < kBeginning) {
        const std::size_t taken = std::min(bytes.size(), kBeginning - beginning.size());
        beginning.insert(beginning.end(), bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(taken));
        bytes = bytes.subspan(taken);
        if (beginning.size() < kBeginning) {
            if (!last) return true;
            state_->stream.level = 0;  // which has no such fault
            return state_->compress(beginning, true, out);
        }
        if (!state_->compress(beginning, false, out)) return false;
    }
    return state_->compress(bytes, last, out);
}

bool Deflater::State::compress(std::span<const std::uint8_t> bytes, bool last, const Out& out) {
    stream.next_in = const_cast<std::uint8_t*>(bytes.data());
    stream.avail_in = static_cast<std::uint32_t>(bytes.size());
    stream.end_of_stream = last ? 1 : 0;
    while (true) {
        if (isal_deflate(&stream) != COMP_OK) throw std::logic_error("the compressor was called wrongly");
        const bool ended = stream.internal_state.state == ZSTATE_END;
        if (stream.avail_out == 0 || ended) {
            if (!made().empty() && !out(made())) return false;
            make_room();
            if (ended) begin();
            if (ended) return true;
        } else if (stream.avail_in == 0 && !last) {
            return true;
        }
    }
}

}  // namespace zam::io
