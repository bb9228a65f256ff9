#pragma once
// zlib streams, made fast: light passes are smooth, so that harder work would save little of them.
#include <cstdint>
#include <memory>
#include <span>

namespace zam::io {

class Deflater {
  public:
    Deflater();
    ~Deflater();
    Deflater(const Deflater&) = delete;
    Deflater& operator=(const Deflater&) = delete;

    // Takes the next bytes of a stream, less than 1 GiB, and returns what has become ready of it; that lasts until
    // the next call. The `last` bytes end the stream, and another one may begin. The same calls give the same bytes.
    [[nodiscard]] std::span<const std::uint8_t> add(std::span<const std::uint8_t> bytes, bool last);

    // The bytes as a whole stream.
    [[nodiscard]] std::span<const std::uint8_t> compress(std::span<const std::uint8_t> bytes) {
        return add(bytes, true);
    }

  private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace zam::io
