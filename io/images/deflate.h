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

    // The bytes as a whole stream, which lasts until the next call. The same bytes give the same stream.
    [[nodiscard]] std::span<const std::uint8_t> compress(std::span<const std::uint8_t> bytes);

  private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace zam::io
