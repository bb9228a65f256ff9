#include "io/images/deflate.h"

#include <isa-l/igzip_lib.h>

#include <stdexcept>
#include <vector>

namespace zam::io {
namespace {

constexpr std::size_t kPiece = 256 * 1024;

}  // namespace

struct Deflater::State {
    isal_zstream stream{};
    std::vector<std::uint8_t> level = std::vector<std::uint8_t>(ISAL_DEF_LVL1_DEFAULT);
    std::vector<std::uint8_t> piece = std::vector<std::uint8_t>(kPiece);

    State() { begin(); }

    void begin() {
        isal_deflate_init(&stream);
        stream.level = 1;
        stream.level_buf = level.data();
        stream.level_buf_size = static_cast<std::uint32_t>(level.size());
        stream.gzip_flag = IGZIP_ZLIB;
        make_room();
    }

    void make_room() {
        stream.next_out = piece.data();
        stream.avail_out = static_cast<std::uint32_t>(piece.size());
    }

    [[nodiscard]] std::span<const std::uint8_t> made() const {
        return {piece.data(), piece.size() - stream.avail_out};
    }
};

Deflater::Deflater() : state_(std::make_unique<State>()) {}
Deflater::~Deflater() = default;

bool Deflater::add(std::span<const std::uint8_t> bytes, bool last, const Out& out) {
    isal_zstream& stream = state_->stream;
    stream.next_in = const_cast<std::uint8_t*>(bytes.data());
    stream.avail_in = static_cast<std::uint32_t>(bytes.size());
    stream.end_of_stream = last ? 1 : 0;
    while (true) {
        if (isal_deflate(&stream) != COMP_OK) throw std::logic_error("the compressor was called wrongly");
        const bool ended = stream.internal_state.state == ZSTATE_END;
        if (stream.avail_out == 0 || ended) {
            if (!state_->made().empty() && !out(state_->made())) return false;
            state_->make_room();
            if (ended) state_->begin();
            if (ended) return true;
        } else if (stream.avail_in == 0 && !last) {
            return true;
        }
    }
}

}  // namespace zam::io
