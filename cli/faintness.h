#pragma once
// Whether the light that was rendered can be seen at all: what a first render of a new scene most often lacks.
#include <atomic>
#include <string>

#include "host/runner/session.h"

namespace zam::cli {

class Faintness {
  public:
    // May be called on several threads at once.
    void look_at(const host::Frame& light);

    // Of all frames so far: a note with a way out when they are black, or nearly so; else empty.
    [[nodiscard]] std::string note(const std::string& scene) const;

  private:
    std::atomic<int> frames_ = 0;
    std::atomic<bool> lit_ = false, seen_ = false;
};

}  // namespace zam::cli
