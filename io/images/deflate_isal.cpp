#include <immintrin.h>
#include <isa-l/igzip_lib.h>

#include <algorithm>
#include <stdexcept>
#include <vector>

#include "io/images/deflate.h"

namespace zam::io {
namespace {

constexpr std::size_t kPiece = 256 * 1024;

// At level 1 the library's version 2.30 goes on from a stream's first byte with the hash of a register that it never
// loaded and that still holds the stream's address: now and then the same bytes would become others. Bytes that it only
// looks ahead at are hashed anew with the next call, so the first call offers one byte more than those. Level 0, for
// streams that are not longer, loads the register.
constexpr std::size_t kBeginning = ISAL_LOOK_AHEAD + 1;

// The library leaves the upper halves of wide registers in use, and until they are cleared all code that is compiled
// for narrow ones waits for them.
__attribute__((target("avx"))) void clear_upper_halves() { _mm256_zeroupper(); }

}  // namespace

struct Deflater::State {
    isal_zstream library{};
    std::vector<std::uint8_t> level1 = std::vector<std::uint8_t>(ISAL_DEF_LVL1_DEFAULT);
    std::vector<std::uint8_t> ready = std::vector<std::uint8_t>(kPiece);
    std::size_t size = 0;  // of what is ready
    bool begun = false;

    void begin(int level) {
        isal_deflate_init(&library);
        library.level = static_cast<std::uint32_t>(level);
        library.level_buf = level1.data();
        library.level_buf_size = static_cast<std::uint32_t>(level1.size());
        library.gzip_flag = IGZIP_ZLIB;
    }

    void add(std::span<const std::uint8_t> bytes, bool last) {
        library.next_in = const_cast<std::uint8_t*>(bytes.data());
        library.avail_in = static_cast<std::uint32_t>(bytes.size());
        library.end_of_stream = last ? 1 : 0;
        do {
            if (ready.size() < size + kPiece) ready.resize(std::max(size + kPiece, 2 * ready.size()));
            library.next_out = ready.data() + size;
            library.avail_out = static_cast<std::uint32_t>(kPiece);
            if (isal_deflate(&library) != COMP_OK)
                throw std::logic_error("the compressor was called wrongly");
            size += kPiece - library.avail_out;
        } while (last ? library.internal_state.state != ZSTATE_END : library.avail_out == 0);
        if (__builtin_cpu_supports("avx")) clear_upper_halves();
    }
};

Deflater::Deflater() : state_(std::make_unique<State>()) {}
Deflater::~Deflater() = default;

std::span<const std::uint8_t> Deflater::add(std::span<const std::uint8_t> bytes, bool last) {
    state_->size = 0;
    if (!state_->begun) {
        const bool enough = bytes.size() > kBeginning;
        state_->begin(enough ? 1 : 0);
        if (enough) {
            state_->add(bytes.first(kBeginning), false);
            bytes = bytes.subspan(kBeginning);
        }
    }
    state_->add(bytes, last);
    state_->begun = !last;
    return {state_->ready.data(), state_->size};
}

}  // namespace zam::io
