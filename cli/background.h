#pragma once
// --over: what a light pass is laid over, to look at it.
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "cli/name_pattern.h"
#include "host/runner/session.h"

namespace zam::cli {

// Nothing, a plain colour, or plates: one picture for each frame, or one for all.
class Background {
  public:
    // "", "#rrggbb" or "plate.####.png". Throws UsageError for any other text.
    explicit Background(const std::string& over);

    // Is there a plate for each of these frames, of the right size? Throws io::SceneError.
    void check(const std::vector<int>& frames, int width, int height) const;

    // Throws UsageError when the file of one of these frames is its plate, which it would replace.
    void spare_plates(const std::vector<int>& frames, const std::function<std::string(int)>& output) const;

    // May be called on several threads at once, for different frames. Throws io::SceneError.
    void put_behind(int number, host::Frame* frame) const;

  private:
    std::optional<host::Color> color_;
    std::optional<NamePattern> plates_;
    // The one plate of all frames, read when it is first needed.
    mutable std::mutex mutex_;
    mutable std::optional<host::Frame> plate_;
};

}  // namespace zam::cli
