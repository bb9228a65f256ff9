#pragma once
// Names of image sequences: "out/light.####.png".
#include <string>

namespace zam::cli {

class NamePattern {
  public:
    // The last run of # in the file's name stands for the frame; without any the name is that of a single image.
    explicit NamePattern(const std::string& pattern);

    // Zero-padded to the length of the run; longer numbers are written in full.
    [[nodiscard]] std::string file(int frame) const;

    // Has every frame a name of its own?
    [[nodiscard]] bool varies() const { return digits_ > 0; }

  private:
    std::string before_, after_;
    std::size_t digits_ = 0;
};

}  // namespace zam::cli
