#include "io/images/tiff_writer.h"

#include <tiffio.h>

#include <algorithm>
#include <memory>
#include <new>
#include <vector>

#include "host/text.h"
#include "io/images/deflate.h"
#include "io/images/samples.h"

namespace zam::io {
namespace {

constexpr std::size_t kStripBytes = 1024 * 1024;  // at most, unless a single row is longer

// The library's calls onto our file.
tmsize_t read_nothing(thandle_t, void*, tmsize_t) { return 0; }
tmsize_t write_bytes(thandle_t file, void* bytes, tmsize_t count) {
    return static_cast<WholeFile*>(file)->write(bytes, static_cast<std::size_t>(count)) ? count : 0;
}
toff_t seek(thandle_t handle, toff_t offset, int whence) {
    auto* file = static_cast<WholeFile*>(handle);
    const toff_t start = whence == SEEK_SET ? 0 : whence == SEEK_CUR ? file->position() : file->size();
    const toff_t target = start + offset;
    return file->seek(target) ? target : static_cast<toff_t>(-1);
}
int close_nothing(thandle_t) { return 0; }
toff_t size_of(thandle_t file) { return static_cast<WholeFile*>(file)->size(); }

struct Close {
    void operator()(TIFF* tiff) const { TIFFClose(tiff); }
};

// The differences of neighbouring pixels, which compress better: the format's predictor 2.
template <class Sample>
void subtract_left(Sample* row, std::size_t samples) {
    for (std::size_t i = samples; i-- > 4;) row[i] = static_cast<Sample>(row[i] - row[i - 4]);
}

template <class Sample, class FillRow>
bool write_strips(TIFF* tiff, const host::Frame& frame, int rows_per_strip, const FillRow& fill_row) {
    const std::size_t row_samples = static_cast<std::size_t>(frame.width) * 4;
    std::vector<Sample> strip(row_samples * static_cast<std::size_t>(rows_per_strip));
    Deflater deflater;
    for (int first = 0; first < frame.height; first += rows_per_strip) {
        const int rows = std::min(rows_per_strip, frame.height - first);
        for (int y = 0; y < rows; ++y) {
            Sample* row = strip.data() + row_samples * static_cast<std::size_t>(y);
            fill_row(first + y, row);
            subtract_left(row, row_samples);
        }
        const std::span<const std::uint8_t> packed =
            deflater.compress({reinterpret_cast<const std::uint8_t*>(strip.data()),
                               row_samples * static_cast<std::size_t>(rows) * sizeof(Sample)});
        const auto number = static_cast<std::uint32_t>(first / rows_per_strip);
        if (TIFFWriteRawStrip(tiff, number, const_cast<std::uint8_t*>(packed.data()),
                              static_cast<tmsize_t>(packed.size())) < 0)
            return false;
    }
    return true;
}

void set_tags(TIFF* tiff, const host::Frame& frame, const Metadata& metadata, int bits, int rows_per_strip) {
    const std::uint16_t extra[] = {EXTRASAMPLE_UNASSALPHA};
    const std::string description = "frame " + std::to_string(metadata.frame.value_or(0)) + ", time " +
                                    format_number(metadata.seconds()) + " s, scene digest " + metadata.digest;
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, static_cast<std::uint32_t>(frame.width));
    TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, static_cast<std::uint32_t>(frame.height));
    TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, bits);
    TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, 4);
    TIFFSetField(tiff, TIFFTAG_EXTRASAMPLES, 1, extra);
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_RGB);
    TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    TIFFSetField(tiff, TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT);
    TIFFSetField(tiff, TIFFTAG_COMPRESSION, COMPRESSION_ADOBE_DEFLATE);
    TIFFSetField(tiff, TIFFTAG_PREDICTOR, PREDICTOR_HORIZONTAL);
    TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, static_cast<std::uint32_t>(rows_per_strip));
    if (metadata.pixel_aspect.value() != 1.0) {
        TIFFSetField(tiff, TIFFTAG_RESOLUTIONUNIT, RESUNIT_NONE);
        TIFFSetField(tiff, TIFFTAG_XRESOLUTION, 1.0 / metadata.pixel_aspect.value());
        TIFFSetField(tiff, TIFFTAG_YRESOLUTION, 1.0);
    }
    TIFFSetField(tiff, TIFFTAG_SOFTWARE, metadata.software.c_str());
    TIFFSetField(tiff, TIFFTAG_IMAGEDESCRIPTION, description.c_str());
}

}  // namespace

bool write_tiff(const host::Frame& frame, const Metadata& metadata, const ImageOptions& options,
                WholeFile& file) {
    static const bool quiet = [] {  // the library would print its own messages; ours say more
        TIFFSetErrorHandler(nullptr);
        TIFFSetWarningHandler(nullptr);
        return true;
    }();
    static_cast<void>(quiet);
    const std::size_t row_bytes = static_cast<std::size_t>(frame.width) * (options.bits == 8 ? 4 : 8);
    const int rows_per_strip = std::clamp(static_cast<int>(kStripBytes / row_bytes), 1, frame.height);
    // Files of 4 GiB and more need the format's wider offsets.
    const bool large = row_bytes * static_cast<std::size_t>(frame.height) > std::size_t{4000} * 1024 * 1024;
    const std::unique_ptr<TIFF, Close> tiff(TIFFClientOpen("image", large ? "w8" : "w", &file, read_nothing,
                                                           write_bytes, seek, close_nothing, size_of, nullptr,
                                                           nullptr));
    if (!tiff) return false;
    set_tags(tiff.get(), frame, metadata, options.bits, rows_per_strip);
    const bool written =
        options.bits == 8
            ? write_strips<std::uint8_t>(
                  tiff.get(), frame, rows_per_strip,
                  [&](int y, std::uint8_t* row) { rgba8_row(frame, y, options.dither, row); })
            : write_strips<std::uint16_t>(tiff.get(), frame, rows_per_strip,
                                          [&](int y, std::uint16_t* row) { rgba16_row(frame, y, row); });
    return written && TIFFFlush(tiff.get());
}

}  // namespace zam::io
