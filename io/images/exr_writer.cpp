#include "io/images/exr_writer.h"

#include <OpenEXR/ImfChannelList.h>
#include <OpenEXR/ImfChromaticitiesAttribute.h>
#include <OpenEXR/ImfDoubleAttribute.h>
#include <OpenEXR/ImfFrameBuffer.h>
#include <OpenEXR/ImfHeader.h>
#include <OpenEXR/ImfIO.h>
#include <OpenEXR/ImfIntAttribute.h>
#include <OpenEXR/ImfOutputFile.h>
#include <OpenEXR/ImfStandardAttributes.h>
#include <OpenEXR/ImfStringAttribute.h>

#include <algorithm>
#include <new>
#include <vector>

#include "io/images/samples.h"

namespace zam::io {
namespace {

constexpr int kBlockRows = 64;  // converted at once; a multiple of what the library compresses at once

struct FileFailed {};

// The library's stream onto our file.
class Stream : public Imf::OStream {
  public:
    explicit Stream(WholeFile& file) : Imf::OStream("image"), file_(file) {}
    void write(const char bytes[], int count) override {
        if (!file_.write(bytes, static_cast<std::size_t>(count))) throw FileFailed();
    }
    std::uint64_t tellp() override { return file_.position(); }
    void seekp(std::uint64_t position) override {
        if (!file_.seek(position)) throw FileFailed();
    }

  private:
    WholeFile& file_;
};

Imf::Header header_of(const host::Frame& frame, const Metadata& metadata, const ImageOptions& options) {
    Imf::Header header(frame.width, frame.height, static_cast<float>(metadata.pixel_aspect.value()));
    const bool half = options.bits == 16;
    // Of those that lose nothing the fastest that halves the file or better; full floats shrink too little to be worth
    // the time.
    header.compression() = half ? Imf::PIZ_COMPRESSION : Imf::NO_COMPRESSION;
    for (const char* channel : {"R", "G", "B", "A"})
        header.channels().insert(channel, Imf::Channel(half ? Imf::HALF : Imf::FLOAT));
    if (options.linear) Imf::addChromaticities(header, Imf::Chromaticities());  // those of sRGB
    Imf::addFramesPerSecond(header, Imf::Rational(metadata.frame_rate.num, metadata.frame_rate.den));
    header.insert("software", Imf::StringAttribute(metadata.software));
    header.insert("frame", Imf::IntAttribute(metadata.frame));
    header.insert("time", Imf::DoubleAttribute(metadata.seconds()));
    header.insert("sceneDigest", Imf::StringAttribute(metadata.digest));
    return header;
}

// Writes rows in blocks, through a buffer of the file's own kind of sample.
template <class Sample>
void write_rows(Imf::OutputFile& out, Imf::PixelType type, const host::Frame& frame, bool linear) {
    const std::size_t row_samples = static_cast<std::size_t>(frame.width) * 4;
    std::vector<float> row(row_samples);
    std::vector<Sample> block(row_samples * kBlockRows);
    for (int first = 0; first < frame.height; first += kBlockRows) {
        const int rows = std::min(kBlockRows, frame.height - first);
        for (int y = 0; y < rows; ++y) {
            premultiplied_row(frame, first + y, linear, row.data());
            std::copy(row.begin(), row.end(), block.begin() + y * static_cast<std::ptrdiff_t>(row_samples));
        }
        // The library counts rows from the image's top; the block begins at `first`.
        Imf::FrameBuffer buffer;
        const std::size_t pixel_bytes = 4 * sizeof(Sample), row_bytes = row_samples * sizeof(Sample);
        std::size_t sample = 0;
        for (const char* channel : {"R", "G", "B", "A"}) {
            char* top = reinterpret_cast<char*>(block.data() + sample++) -
                        static_cast<std::ptrdiff_t>(row_bytes) * first;
            buffer.insert(channel, Imf::Slice(type, top, pixel_bytes, row_bytes));
        }
        out.setFrameBuffer(buffer);
        out.writePixels(rows);
    }
}

}  // namespace

bool write_exr(const host::Frame& frame, const Metadata& metadata, const ImageOptions& options,
               WholeFile& file) {
    try {
        Stream stream(file);
        // No threads of the library's: several frames are encoded at once.
        Imf::OutputFile out(stream, header_of(frame, metadata, options), 0);
        if (options.bits == 16)
            write_rows<Imath::half>(out, Imf::HALF, frame, options.linear);
        else
            write_rows<float>(out, Imf::FLOAT, frame, options.linear);
        return true;
    } catch (const FileFailed&) {
        return false;
    }
}

}  // namespace zam::io
