#include "io/images/write_image.h"

#include <algorithm>

#include "io/core_clock.h"
#include "io/images/png_writer.h"
#ifdef ZAM_EXR
#include "io/images/exr_writer.h"
#endif
#ifdef ZAM_TIFF
#include "io/images/tiff_writer.h"
#endif

namespace zam::io {
namespace {

using Writer = bool (*)(const host::Frame&, const Metadata&, const ImageOptions&, WholeFile&);

// Null when there is none in this program.
Writer writer_of(ImageFormat format) {
    switch (format) {
        case ImageFormat::png:
            return write_png;
#ifdef ZAM_EXR
        case ImageFormat::exr:
            return write_exr;
#endif
#ifdef ZAM_TIFF
        case ImageFormat::tiff:
            return write_tiff;
#endif
        default:
            return nullptr;
    }
}

}  // namespace

bool can_write(ImageFormat format) { return writer_of(format) != nullptr; }

WriteTimes write_image(const std::string& file, const host::Frame& frame, const Metadata& metadata,
                       const ImageOptions& options) {
    const std::size_t samples = static_cast<std::size_t>(std::max(frame.width, 0)) *
                                static_cast<std::size_t>(std::max(frame.height, 0)) * 4;
    if (samples == 0 || frame.argb.size() != samples)
        throw WriteError(file +
                         ": the frame has no pixels, or not as many as its size says\n"
                         "hint: the plug-in gave no image");
    const Writer write = writer_of(options.format);
    if (!write)
        throw WriteError(file + ": this program was built without writing such files\nhint: write PNG files");
    const double start = core_seconds();
    WholeFile whole(file);
    write(frame, metadata, options, whole);  // keep() tells of failures
    whole.keep();
    return {core_seconds() - start - whole.seconds_on_disk(), whole.seconds_on_disk()};
}

}  // namespace zam::io
