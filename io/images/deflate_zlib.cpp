// By zlib, for where there is no ISA-L.
#include <zlib.h>

#include <algorithm>
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
    z_stream library{};
    std::vector<std::uint8_t> ready = std::vector<std::uint8_t>(kPiece);

    State() {
        if (deflateInit(&library, kLevel) != Z_OK) throw std::bad_alloc();
    }
    ~State() { deflateEnd(&library); }
    State(const State&) = delete;
    State& operator=(const State&) = delete;
};

Deflater::Deflater() : state_(std::make_unique<State>()) {}
Deflater::~Deflater() = default;

std::span<const std::uint8_t> Deflater::add(std::span<const std::uint8_t> bytes, bool last) {
    z_stream& library = state_->library;
    std::vector<std::uint8_t>& ready = state_->ready;
    library.next_in = const_cast<Bytef*>(bytes.data());
    library.avail_in = static_cast<uInt>(bytes.size());
    std::size_t size = 0;
    do {
        if (ready.size() < size + kPiece) ready.resize(std::max(size + kPiece, 2 * ready.size()));
        library.next_out = ready.data() + size;
        library.avail_out = static_cast<uInt>(kPiece);
        if (deflate(&library, last ? Z_FINISH : Z_NO_FLUSH) == Z_STREAM_ERROR)
            throw std::logic_error("the compressor was called wrongly");
        size += kPiece - library.avail_out;
    } while (library.avail_out == 0);
    if (last) deflateReset(&library);
    return {ready.data(), size};
}

}  // namespace zam::io
