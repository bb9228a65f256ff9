#include "io/images/exr_writer.h"

#include <openexr.h>

#include <algorithm>
#include <bit>
#include <vector>

#include "io/images/deflate.h"
#include "io/images/samples.h"

namespace zam::io {
namespace {

constexpr int kChunkRows = 16;  // that ZIP compresses at once

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

// What the library's own conversion gives for values from 0 to 1, in a loop that compilers turn into vector
// instructions. A power of two whose last place is that of the value as a half is added, so that the addition rounds.
void to_samples(const float* values, std::size_t count, std::uint16_t* halves) {
    constexpr std::int32_t kExponent = 0x7f800000, kSmallestNormal = 0x38800000, kPlaces = 13 << 23;
    for (std::size_t i = 0; i < count; ++i) {
        const std::int32_t binade =
            std::max(std::bit_cast<std::int32_t>(values[i]) & kExponent, kSmallestNormal);
        const std::int32_t power = binade + kPlaces;
        const float sum = values[i] + std::bit_cast<float>(power);
        halves[i] = static_cast<std::uint16_t>(std::bit_cast<std::int32_t>(sum) - power +
                                               ((binade - kSmallestNormal) >> 13));
    }
}
void to_samples(const float* values, std::size_t count, float* samples) {
    std::copy_n(values, count, samples);
}

// The format's way to make samples compress better: the bytes of even places of a chunk first, those of odd ones behind
// them, and of all the differences, around 128.
void sort_bytes(std::span<const std::uint8_t> row, std::uint8_t* even, std::uint8_t* odd) {
    const std::uint8_t* bytes = row.data();
    const std::size_t pairs = row.size() / 2;
    for (std::size_t i = 0; i < pairs; ++i) {
        even[i] = bytes[2 * i];
        odd[i] = bytes[2 * i + 1];
    }
}
void subtract_left(const std::uint8_t* sorted, std::size_t count, std::uint8_t* differences) {
    differences[0] = sorted[0];
    for (std::size_t i = 1; i < count; ++i)
        differences[i] = static_cast<std::uint8_t>(sorted[i] - sorted[i - 1] + 128);
}

// Compressed by us, and much faster than the library does it.
template <class Sample>
void write_rows(Context& context, const host::Frame& frame, bool linear) {
    const std::size_t row = static_cast<std::size_t>(frame.width) * 4, row_bytes = row * sizeof(Sample);
    std::vector<float> values(row);
    std::vector<Sample> samples(row * kChunkRows);
    std::vector<std::uint8_t> sorted(row_bytes * kChunkRows), prepared(sorted.size());
    Deflater deflater;
    for (int first = 0; first < frame.height && context.good(); first += kChunkRows) {
        const auto rows = static_cast<std::size_t>(std::min(kChunkRows, frame.height - first));
        const std::span<const std::uint8_t> plain = {reinterpret_cast<const std::uint8_t*>(samples.data()),
                                                     row_bytes * rows};
        for (std::size_t y = 0; y < rows; ++y) {
            premultiplied_row(frame, first + static_cast<int>(y), linear, values.data());
            to_samples(values.data(), row, samples.data() + row * y);
            std::uint8_t* even = sorted.data() + row_bytes / 2 * y;
            sort_bytes(plain.subspan(row_bytes * y, row_bytes), even, even + plain.size() / 2);
        }
        subtract_left(sorted.data(), plain.size(), prepared.data());
        const std::span<const std::uint8_t> packed = deflater.compress({prepared.data(), plain.size()});
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
