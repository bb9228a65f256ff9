#include "io/images/png_writer.h"

#include <png.h>

#include <array>
#include <bit>
#include <csetjmp>
#include <new>
#include <vector>

#include "host/text.h"
#include "io/images/deflate.h"
#include "io/images/samples.h"

namespace zam::io {
namespace {

constexpr std::size_t kBand =
    256 * 1024;                        // bytes, at least, that are compressed at once: they stay in caches
constexpr std::uint8_t kFilterUp = 2;  // of the format's five the best for glows, and the fastest

// Rows as they are compressed: of each the filter's number, then its differences from the one above.
class FilteredRows {
  public:
    FilteredRows(const host::Frame& frame, const ImageOptions& options)
        : frame_(frame),
          options_(options),
          samples_(static_cast<std::size_t>(frame.width) * 4),
          bytes_(samples_ * (options.bits == 8 ? 1 : 2)),
          row_(samples_),
          above_(samples_),
          band_(kBand + bytes_ + 1) {}

    // The next band; `last` says whether it ends the picture. It lasts until the next call.
    std::span<const std::uint8_t> band(bool* last) {
        std::size_t size = 0;
        for (; size < kBand && next_ < frame_.height; ++next_) {
            row_.swap(above_);
            read_row();
            const auto* row = reinterpret_cast<const std::uint8_t*>(row_.data());
            const auto* above = reinterpret_cast<const std::uint8_t*>(above_.data());
            std::uint8_t* to = band_.data() + size;
            *to++ = kFilterUp;
            for (std::size_t i = 0; i < bytes_; ++i) to[i] = static_cast<std::uint8_t>(row[i] - above[i]);
            size += bytes_ + 1;
        }
        *last = next_ == frame_.height;
        return {band_.data(), size};
    }

  private:
    void read_row() {
        if (options_.bits == 8) {
            rgba8_row(frame_, next_, options_.dither, reinterpret_cast<std::uint8_t*>(row_.data()));
            return;
        }
        rgba16_row(frame_, next_, row_.data());
        if constexpr (std::endian::native == std::endian::little)  // the format has the high byte first
            for (std::uint16_t& sample : row_) sample = static_cast<std::uint16_t>(sample << 8 | sample >> 8);
    }

    const host::Frame& frame_;
    const ImageOptions& options_;
    std::size_t samples_, bytes_;             // of a row
    std::vector<std::uint16_t> row_, above_;  // of 8 bits each sample takes half an element
    std::vector<std::uint8_t> band_;
    int next_ = 0;
};

// libpng would print its own messages; ours say more.
void jump_on_error(png_structp png, png_const_charp) { png_longjmp(png, 1); }
void ignore_warning(png_structp, png_const_charp) {}

void write_bytes(png_structp png, png_bytep bytes, png_size_t count) {
    if (!static_cast<WholeFile*>(png_get_io_ptr(png))->write(bytes, count)) png_error(png, "");
}
void flush_nothing(png_structp) {}

// libpng's structures. It reports errors by a jump, which must not skip destructors: every call that may jump stands
// in a function that has none to run.
class Png {
  public:
    explicit Png(WholeFile& file)
        : png_(png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, jump_on_error, ignore_warning)),
          info_(png_ ? png_create_info_struct(png_) : nullptr) {
        if (!info_) {
            png_destroy_write_struct(&png_, nullptr);
            throw std::bad_alloc();
        }
        png_set_write_fn(png_, &file, write_bytes, flush_nothing);
    }
    ~Png() { png_destroy_write_struct(&png_, &info_); }
    Png(const Png&) = delete;
    Png& operator=(const Png&) = delete;

    // Pixels that are not square are told by how many go into a length of no unit.
    bool head(int width, int height, int bits, const host::Ratio& pixel_aspect, const png_text* texts,
              int count) {
        if (setjmp(png_jmpbuf(png_))) return false;
        png_set_IHDR(png_, info_, static_cast<png_uint_32>(width), static_cast<png_uint_32>(height), bits,
                     PNG_COLOR_TYPE_RGBA, PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
                     PNG_FILTER_TYPE_DEFAULT);
        if (pixel_aspect.value() != 1.0)
            png_set_pHYs(png_, info_, pixel_aspect.den, static_cast<png_uint_32>(pixel_aspect.num),
                         PNG_RESOLUTION_UNKNOWN);
        png_set_text(png_, info_, texts, count);
        png_write_info(png_, info_);
        return true;
    }

    // Compressed by us, and much faster than libpng does it.
    bool chunk(const char* name, std::span<const std::uint8_t> bytes) {
        if (setjmp(png_jmpbuf(png_))) return false;
        png_write_chunk(png_, reinterpret_cast<png_const_bytep>(name), bytes.data(), bytes.size());
        return true;
    }

  private:
    png_structp png_;
    png_infop info_;
};

bool write_head(Png& png, const host::Frame& frame, const Metadata& metadata, const ImageOptions& options) {
    std::vector<std::array<std::string, 2>> facts = {{"Software", metadata.software},
                                                     {"Scene Digest", metadata.digest}};
    if (metadata.frame) {
        facts.push_back({"Frame", std::to_string(*metadata.frame)});
        facts.push_back({"Time", format_number(metadata.seconds()) + " s"});
    }
    std::vector<png_text> texts(facts.size());
    for (std::size_t i = 0; i < facts.size(); ++i) {
        texts[i].compression = PNG_TEXT_COMPRESSION_NONE;
        texts[i].key = const_cast<char*>(facts[i][0].c_str());
        texts[i].text = const_cast<char*>(facts[i][1].c_str());
    }
    return png.head(frame.width, frame.height, options.bits, metadata.pixel_aspect, texts.data(),
                    static_cast<int>(texts.size()));
}

}  // namespace

bool write_png(const host::Frame& frame, const Metadata& metadata, const ImageOptions& options,
               WholeFile& file) {
    Png png(file);
    if (!write_head(png, frame, metadata, options)) return false;
    FilteredRows rows(frame, options);
    Deflater deflater;
    for (bool last = false; !last;) {
        const std::span<const std::uint8_t> band = rows.band(&last);
        const std::span<const std::uint8_t> ready = deflater.add(band, last);
        if (!ready.empty() && !png.chunk("IDAT", ready)) return false;
    }
    return png.chunk("IEND", {});
}

}  // namespace zam::io
