// By zlib, for where there is no ISA-L.
#include <zlib.h>

#include <new>
#include <stdexcept>
#include <vector>

#include "io/images/deflate.h"

namespace zam::io {
namespace {

constexpr std::size_t kPiece = 256 * 1024;
constexpr int kLevel = 1;

}  // namespace

struct Deflater::State {
    z_stream stream{};
    std::vector<std::uint8_t> piece = std::vector<std::uint8_t>(kPiece);

    State() {
        if (deflateInit(&stream, kLevel) != Z_OK) throw std::bad_alloc();
        make_room();
    }
    ~State() { deflateEnd(&stream); }
    State(const State&) = delete;
    State& operator=(const State&) = delete;

    void make_room() {
        stream.next_out = piece.data();
        stream.avail_out = static_cast<uInt>(piece.size());
    }

    [[nodiscard]] std::span<const std::uint8_t> made() const {
        return {piece.data(), piece.size() - stream.avail_out};
    }
};

Deflater::Deflater() : state_(std::make_unique<State>()) {}
Deflater::~Deflater() = default;

bool Deflater::add(std::span<const std::uint8_t> bytes, bool last, const Out& out) {
    z_stream& stream = state_->stream;
    stream.next_in = const_cast<Bytef*>(bytes.data());
    stream.avail_in = static_cast<uInt>(bytes.size());
    while (true) {
        const int result = deflate(&stream, last ? Z_FINISH : Z_NO_FLUSH);
        const bool ended = result == Z_STREAM_END;
        if (result != Z_OK && result != Z_BUF_ERROR && !ended)
            throw std::logic_error("the compressor was called wrongly");
        if (stream.avail_out == 0 || ended) {
            if (!state_->made().empty() && !out(state_->made())) return false;
            state_->make_room();
            if (ended) deflateReset(&stream);
            if (ended) return true;
        } else if (stream.avail_in == 0 && !last) {
            return true;
        }
    }
}

}  // namespace zam::io
