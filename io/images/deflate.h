#pragma once
// A zlib stream, made fast: light passes are smooth, so that harder work would save little of them.
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>

namespace zam::io {

class Deflater {
  public:
    // Gets the stream's bytes, piece by piece; false ends the work.
    using Out = std::function<bool(std::span<const std::uint8_t>)>;

    Deflater();
    ~Deflater();
    Deflater(const Deflater&) = delete;
    Deflater& operator=(const Deflater&) = delete;

    // Compresses the next bytes; with the `last` ones the stream ends, and another one may begin. False when `out`
    // said so. The same calls give the same bytes.
    bool add(std::span<const std::uint8_t> bytes, bool last, const Out& out);

  private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace zam::io
