#pragma once
// Names of image sequences: "out/light.####.png".
#include <string>

namespace zam::cli {

class NamePattern {
  public:
    // The last run of # in the file's name stands for the frame; without any the name is that of a single
    // image. Throws UsageError for names that do not end in .png, and for `several` frames without a #.
    NamePattern(const std::string& pattern, bool several);

    // Zero-padded to the length of the run; longer numbers are written in full.
    [[nodiscard]] std::string file(int frame) const;

  private:
    std::string before_, after_;
    std::size_t digits_ = 0;
};

}  // namespace zam::cli
