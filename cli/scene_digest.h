#pragma once
// A name for what a frame was rendered from, told in image files.
#include <string>
#include <utility>
#include <vector>

#include "host/composition/composition.h"
#include "host/runner/session.h"

namespace zam::cli {

// What the command line set: controls by their index, in the order of their being set.
using GivenControls = std::vector<std::pair<int, host::Animated<double>>>;

// 32 hexadecimal digits, XXH3 of 128 bits: of the bytes of the scene's file and of the preset's, of what was read
// from the scene (which the command line may have a say in, and files beside it), of the controls given, of depth and
// resolution. Equal digests stand for equal light at equal frames. Throws io::SceneError when a file cannot be read
// again.
[[nodiscard]] std::string scene_digest(const std::vector<std::string>& files,
                                       const host::Composition& composition, const GivenControls& given,
                                       const host::RenderSettings& settings);

}  // namespace zam::cli
