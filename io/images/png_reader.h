#pragma once
// PNG files as backgrounds.
#include <memory>
#include <string>

#include "host/runner/session.h"

namespace zam::io {

class PngReader {
  public:
    // Opens the file and reads its head. Throws SceneError.
    explicit PngReader(const std::string& file);
    ~PngReader();
    PngReader(const PngReader&) = delete;
    PngReader& operator=(const PngReader&) = delete;

    [[nodiscard]] int width() const;
    [[nodiscard]] int height() const;

    // The picture as a frame of that depth, whatever the file's kind of pixels; opaque where that knows no alpha.
    // Values are scaled, and neither made linear nor corrected. To be called once. Throws SceneError.
    [[nodiscard]] host::Frame read(host::Depth depth);

  private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace zam::io
