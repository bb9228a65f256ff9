#pragma once
// TIFF: straight alpha, 8 or 16 bits.
#include "io/images/image.h"

namespace zam::io {

// False when the file failed, which then tells more. Throws std::bad_alloc.
bool write_tiff(const host::Frame& frame, const Metadata& metadata, const ImageOptions& options,
                WholeFile& file);

}  // namespace zam::io
