#pragma once
// One frame into one image file.
#include <string>

#include "io/images/image.h"

namespace zam::io {

// Whether this program was built to write such files.
[[nodiscard]] bool can_write(ImageFormat format);

// How long the work took on a core.
struct WriteTimes {
    double encode = 0.0, write = 0.0;  // seconds
};

// The file appears under its name only when it is complete; one that is there already is replaced. The same frame,
// metadata and options give the same bytes. Throws WriteError.
WriteTimes write_image(const std::string& file, const host::Frame& frame, const Metadata& metadata,
                       const ImageOptions& options);

}  // namespace zam::io
