#pragma once
// Rendered frames as image files: what all writers share.
#include <optional>
#include <string>
#include <vector>

#include "host/runner/session.h"
#include "io/whole_file.h"

namespace zam::io {

enum class ImageFormat { png, exr, tiff };

// By the end of a file's name, in any case: .png, .exr, .tif, .tiff.
[[nodiscard]] std::optional<ImageFormat> format_of(const std::string& file);

// Bits per sample that a format takes, the usual ones first.
[[nodiscard]] std::vector<int> bits_of(ImageFormat format);

// What a file's samples are. PNG and TIFF: 8 or 16 bits, straight alpha. OpenEXR: 16 (half) or 32 (float),
// premultiplied.
struct ImageOptions {
    ImageFormat format = ImageFormat::png;
    int bits = 8;
    bool linear = true;   // OpenEXR: codes are taken for sRGB and made linear; false: as they are
    bool dither = false;  // 8 bits from a frame of 16: an ordered pattern in place of rounding
};

// Told in the file. Nothing in it depends on when or where a frame is rendered.
struct Metadata {
    std::optional<int> frame;  // none: the picture shows several
    host::Ratio frame_rate{24, 1};
    host::Ratio pixel_aspect{1, 1};
    std::string software;  // program and version
    std::string digest;    // of the scene and what it was rendered with

    [[nodiscard]] double seconds() const { return frame.value_or(0) / frame_rate.value(); }
};

}  // namespace zam::io
