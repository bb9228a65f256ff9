// By zlib, for where there is no libdeflate.
#include <zlib.h>

#include <algorithm>
#include <new>
#include <stdexcept>
#include <vector>

#include "io/images/deflate.h"

namespace zam::io {
namespace {

constexpr std::size_t kPiece = 256 * 1024;
constexpr std::size_t kMostAtOnce = std::size_t{1} << 30;  // the library counts in 32 bits
constexpr int kLevel = 1;

}  // namespace

struct Deflater::State {
    z_stream library{};
    std::vector<std::uint8_t> stream;

    State() {
        if (deflateInit(&library, kLevel) != Z_OK) throw std::bad_alloc();
    }
    ~State() { deflateEnd(&library); }
    State(const State&) = delete;
    State& operator=(const State&) = delete;
};

Deflater::Deflater() : state_(std::make_unique<State>()) {}
Deflater::~Deflater() = default;

std::span<const std::uint8_t> Deflater::compress(std::span<const std::uint8_t> bytes) {
    z_stream& library = state_->library;
    std::vector<std::uint8_t>& stream = state_->stream;
    std::size_t size = 0;
    for (int result = Z_OK; result != Z_STREAM_END;) {
        if (library.avail_in == 0) {
            const std::size_t next = std::min(bytes.size(), kMostAtOnce);
            library.next_in = const_cast<Bytef*>(bytes.data());
            library.avail_in = static_cast<uInt>(next);
            bytes = bytes.subspan(next);
        }
        if (stream.size() < size + kPiece) stream.resize(std::max(size + kPiece, 2 * stream.size()));
        library.next_out = stream.data() + size;
        library.avail_out = static_cast<uInt>(kPiece);
        result = deflate(&library, bytes.empty() ? Z_FINISH : Z_NO_FLUSH);
        if (result != Z_OK && result != Z_BUF_ERROR && result != Z_STREAM_END)
            throw std::logic_error("the compressor was called wrongly");
        size += kPiece - library.avail_out;
    }
    deflateReset(&library);
    return {stream.data(), size};
}

}  // namespace zam::io
