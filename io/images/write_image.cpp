#include "io/images/write_image.h"

#include <algorithm>
#include <chrono>

#include "io/images/exr_writer.h"
#include "io/images/png_writer.h"
#include "io/images/tiff_writer.h"

namespace zam::io {
namespace {

bool write(const host::Frame& frame, const Metadata& metadata, const ImageOptions& options, WholeFile& file) {
    switch (options.format) {
        case ImageFormat::exr:
            return write_exr(frame, metadata, options, file);
        case ImageFormat::tiff:
            return write_tiff(frame, metadata, options, file);
        default:
            return write_png(frame, metadata, options, file);
    }
}

}  // namespace

WriteTimes write_image(const std::string& file, const host::Frame& frame, const Metadata& metadata,
                       const ImageOptions& options) {
    const std::size_t samples = static_cast<std::size_t>(std::max(frame.width, 0)) *
                                static_cast<std::size_t>(std::max(frame.height, 0)) * 4;
    if (samples == 0 || frame.argb.size() != samples)
        throw WriteError(file +
                         ": the frame has no pixels, or not as many as its size says\n"
                         "hint: the plug-in gave no image");
    const auto start = std::chrono::steady_clock::now();
    WholeFile whole(file);
    write(frame, metadata, options, whole);  // keep() tells of failures
    whole.keep();
    const double all = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    return {all - whole.seconds_on_disk(), whole.seconds_on_disk()};
}

}  // namespace zam::io
