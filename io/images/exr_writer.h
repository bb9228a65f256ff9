#pragma once
// OpenEXR: half or float, premultiplied.
#include "io/images/image.h"

namespace zam::io {

// False when the file failed, which then tells more. Throws std::bad_alloc.
bool write_exr(const host::Frame& frame, const Metadata& metadata, const ImageOptions& options,
               WholeFile& file);

}  // namespace zam::io
