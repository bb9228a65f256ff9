#pragma once
// --preset: controls from a file, or one of the looks that come with the program.
#include <string>

#include "host/composition/composition.h"

namespace zam::cli {

// The file that is meant: `given` itself if it is there; else "stage-beams" or "stage-beams.json" in the folder
// `presets` beside the program. Empty stays empty.
[[nodiscard]] std::string preset_file(const std::string& given);

// Appends its settings, if one is given, to the scene's own. Throws io::SceneError.
void add_preset(const std::string& given, host::Composition& composition);

}  // namespace zam::cli
