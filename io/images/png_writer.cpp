#include "io/images/png_writer.h"

#include <png.h>

#include <algorithm>
#include <array>
#include <csetjmp>
#include <new>
#include <vector>

#include "host/text.h"
#include "io/images/deflate.h"
#include "io/images/samples.h"

namespace zam::io {
namespace {

constexpr std::size_t kLargestChunk = std::size_t{1} << 30;  // the format allows twice as much
constexpr std::uint8_t kFilterUp = 2;  // of the format's five the best for glows, and the fastest

// Of each row the filter's number, then its differences from the one above.
std::vector<std::uint8_t> filtered(const host::Frame& frame, const ImageOptions& options) {
    const std::size_t samples = static_cast<std::size_t>(frame.width) * 4;
    const std::size_t bytes = samples * (options.bits == 8 ? 1 : 2);
    std::vector<std::uint16_t> wide(options.bits == 8 ? 0 : samples);
    std::vector<std::uint8_t> row(bytes), above(bytes);
    std::vector<std::uint8_t> all((bytes + 1) * static_cast<std::size_t>(frame.height));
    std::uint8_t* to = all.data();
    for (int y = 0; y < frame.height; ++y) {
        row.swap(above);
        if (options.bits == 8) {
            rgba8_row(frame, y, options.dither, row.data());
        } else {
            rgba16_row(frame, y, wide.data());
            for (std::size_t i = 0; i < samples; ++i) {
                row[2 * i] = static_cast<std::uint8_t>(wide[i] >> 8);
                row[2 * i + 1] = static_cast<std::uint8_t>(wide[i]);
            }
        }
        *to++ = kFilterUp;
        for (std::size_t i = 0; i < bytes; ++i) to[i] = static_cast<std::uint8_t>(row[i] - above[i]);
        to += bytes;
    }
    return all;
}

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
    Deflater deflater;
    for (std::span<const std::uint8_t> rest = deflater.compress(filtered(frame, options)); !rest.empty();) {
        const std::size_t size = std::min(rest.size(), kLargestChunk);
        if (!png.chunk("IDAT", rest.first(size))) return false;
        rest = rest.subspan(size);
    }
    return png.chunk("IEND", {});
}

}  // namespace zam::io
