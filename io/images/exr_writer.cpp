#include "io/images/exr_writer.h"

#include <half.h>
#include <openexr.h>

#include <algorithm>
#include <vector>

#include "io/images/deflate.h"
#include "io/images/samples.h"

namespace zam::io {
namespace {

constexpr int kChunkRows = 16;                  // that ZIP compresses at once
constexpr std::size_t kOrder[] = {3, 2, 1, 0};  // A, B, G, R: channels stand in the order of their names

// The library would print its own messages; ours say more.
void ignore_error(exr_const_context_t, exr_result_t, const char*) {}

std::int64_t write_bytes(exr_const_context_t, void* file, const void* bytes, std::uint64_t count,
                         std::uint64_t offset, exr_stream_error_func_ptr_t) {
    auto* whole = static_cast<WholeFile*>(file);
    if (offset != whole->position() && !whole->seek(offset)) return -1;
    return whole->write(bytes, count) ? static_cast<std::int64_t>(count) : -1;
}

class Context {
  public:
    explicit Context(WholeFile& file) {
        exr_context_initializer_t setup = EXR_DEFAULT_CONTEXT_INITIALIZER;
        setup.error_handler_fn = ignore_error;
        setup.user_data = &file;
        setup.write_fn = write_bytes;
        check(exr_start_write(&context_, "image", EXR_WRITE_FILE_DIRECTLY, &setup));
    }
    ~Context() { finish(); }
    Context(const Context&) = delete;
    Context& operator=(const Context&) = delete;

    operator exr_context_t() const { return context_; }  // NOLINT: handed on to the library's calls

    // Remembers failures.
    void check(exr_result_t result) { good_ = good_ && result == EXR_ERR_SUCCESS; }
    [[nodiscard]] bool good() const { return good_; }

    // Writes what is left.
    bool finish() {
        if (context_) check(exr_finish(&context_));
        return good_;
    }

  private:
    exr_context_t context_ = nullptr;
    bool good_ = true;
};

void write_head(Context& context, const host::Frame& frame, const Metadata& metadata,
                const ImageOptions& options) {
    int part = 0;
    context.check(exr_add_part(context, "light", EXR_STORAGE_SCANLINE, &part));
    if (!context.good()) return;
    context.check(
        exr_initialize_required_attr_simple(context, part, frame.width, frame.height, EXR_COMPRESSION_ZIP));
    context.check(
        exr_set_pixel_aspect_ratio(context, part, static_cast<float>(metadata.pixel_aspect.value())));
    for (const char* channel : {"A", "B", "G", "R"})
        context.check(exr_add_channel(context, part, channel,
                                      options.bits == 16 ? EXR_PIXEL_HALF : EXR_PIXEL_FLOAT,
                                      EXR_PERCEPTUALLY_LOGARITHMIC, 1, 1));
    if (options.linear) {
        const exr_attr_chromaticities_t srgb = {0.64f, 0.33f, 0.30f, 0.60f, 0.15f, 0.06f, 0.3127f, 0.3290f};
        context.check(exr_attr_set_chromaticities(context, part, "chromaticities", &srgb));
    }
    const exr_attr_rational_t rate = {metadata.frame_rate.num, metadata.frame_rate.den};
    context.check(exr_attr_set_rational(context, part, "framesPerSecond", &rate));
    context.check(exr_attr_set_string(context, part, "software", metadata.software.c_str()));
    context.check(exr_attr_set_int(context, part, "frame", metadata.frame.value_or(0)));
    context.check(exr_attr_set_double(context, part, "time", metadata.seconds()));
    context.check(exr_attr_set_string(context, part, "sceneDigest", metadata.digest.c_str()));
    context.check(exr_write_header(context));
}

void store(float value, float& sample) { sample = value; }
void store(float value, std::uint16_t& sample) { sample = imath_float_to_half(value); }

// Rows as the format has them: one channel after the other.
template <class Sample>
class Chunk {
  public:
    Chunk(const host::Frame& frame, bool linear)
        : frame_(frame),
          linear_(linear),
          width_(static_cast<std::size_t>(frame.width)),
          row_(width_ * 4),
          samples_(width_ * 4 * kChunkRows) {}

    std::span<const std::uint8_t> fill(int first, int rows) {
        Sample* to = samples_.data();
        for (int y = 0; y < rows; ++y) {
            premultiplied_row(frame_, first + y, linear_, row_.data());
            for (const std::size_t channel : kOrder)
                for (std::size_t x = 0; x < width_; ++x) store(row_[x * 4 + channel], *to++);
        }
        const std::size_t count = static_cast<std::size_t>(to - samples_.data());
        return {reinterpret_cast<const std::uint8_t*>(samples_.data()), count * sizeof(Sample)};
    }

  private:
    const host::Frame& frame_;
    bool linear_;
    std::size_t width_;
    std::vector<float> row_;
    std::vector<Sample> samples_;
};

// The format's way to make samples compress better: bytes of even places first, those of odd ones behind them, and of all
// the differences, around 128.
void prepare(std::span<const std::uint8_t> bytes, std::vector<std::uint8_t>& prepared) {
    const std::size_t half = (bytes.size() + 1) / 2;
    std::vector<std::uint8_t> sorted(bytes.size());
    for (std::size_t i = 0; i < bytes.size() / 2; ++i) {
        sorted[i] = bytes[2 * i];
        sorted[half + i] = bytes[2 * i + 1];
    }
    if (bytes.size() % 2) sorted[half - 1] = bytes.back();
    prepared.resize(bytes.size());
    if (!sorted.empty()) prepared[0] = sorted[0];
    for (std::size_t i = 1; i < sorted.size(); ++i)
        prepared[i] = static_cast<std::uint8_t>(sorted[i] - sorted[i - 1] + 128);
}

// Compressed by us, and much faster than the library does it.
template <class Sample>
void write_rows(Context& context, const host::Frame& frame, bool linear) {
    Chunk<Sample> chunk(frame, linear);
    Deflater deflater;
    std::vector<std::uint8_t> prepared;
    for (int first = 0; first < frame.height && context.good(); first += kChunkRows) {
        const std::span<const std::uint8_t> plain =
            chunk.fill(first, std::min(kChunkRows, frame.height - first));
        prepare(plain, prepared);
        const std::span<const std::uint8_t> packed = deflater.compress(prepared);
        // What does not get smaller is kept as it is; readers tell by the size.
        const std::span<const std::uint8_t> bytes = packed.size() < plain.size() ? packed : plain;
        context.check(exr_write_scanline_chunk(context, 0, first, bytes.data(), bytes.size()));
    }
}

}  // namespace

bool write_exr(const host::Frame& frame, const Metadata& metadata, const ImageOptions& options,
               WholeFile& file) {
    Context context(file);
    if (context.good()) write_head(context, frame, metadata, options);
    if (!context.good()) return false;
    if (options.bits == 16)
        write_rows<std::uint16_t>(context, frame, options.linear);
    else
        write_rows<float>(context, frame, options.linear);
    return context.finish();
}

}  // namespace zam::io
