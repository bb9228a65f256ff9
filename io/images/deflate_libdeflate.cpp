#include <libdeflate.h>

#include <new>
#include <stdexcept>
#include <vector>

#include "io/images/deflate.h"

namespace zam::io {
namespace {

constexpr int kLevel = 1;

}  // namespace

struct Deflater::State {
    libdeflate_compressor* compressor = libdeflate_alloc_compressor(kLevel);
    std::vector<std::uint8_t> stream;

    State() {
        if (!compressor) throw std::bad_alloc();
    }
    ~State() { libdeflate_free_compressor(compressor); }
    State(const State&) = delete;
    State& operator=(const State&) = delete;
};

Deflater::Deflater() : state_(std::make_unique<State>()) {}
Deflater::~Deflater() = default;

std::span<const std::uint8_t> Deflater::compress(std::span<const std::uint8_t> bytes) {
    std::vector<std::uint8_t>& stream = state_->stream;
    stream.resize(libdeflate_zlib_compress_bound(state_->compressor, bytes.size()));
    const std::size_t size = libdeflate_zlib_compress(state_->compressor, bytes.data(), bytes.size(),
                                                      stream.data(), stream.size());
    if (size == 0) throw std::logic_error("the compressor was called wrongly");
    return {stream.data(), size};
}

}  // namespace zam::io
