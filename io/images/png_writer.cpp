#include "io/images/png_writer.h"

#include <png.h>

#include <array>
#include <csetjmp>
#include <new>
#include <vector>

#include "io/images/deflate.h"
#include "io/images/samples.h"
#include "io/text.h"

namespace zam::io {
namespace {

constexpr std::size_t kBlock = 256 * 1024;  // bytes that are compressed at once, at least
constexpr std::uint8_t kFilterUp = 2;       // of the format's five the best for glows, and the fastest

// Filtered rows, as they are compressed.
class Rows {
  public:
    Rows(const host::Frame& frame, const ImageOptions& options)
        : frame_(frame),
          options_(options),
          bytes_(static_cast<std::size_t>(frame.width) * 4 * (options.bits == 8 ? 1 : 2)),
          wide_(options.bits == 8 ? 0 : static_cast<std::size_t>(frame.width) * 4),
          row_(bytes_),
          above_(bytes_) {}

    // The filter's number, then the row's difference from the one above.
    void append(int y, std::vector<std::uint8_t>& block) {
        row_.swap(above_);
        if (options_.bits == 8) {
            rgba8_row(frame_, y, options_.dither, row_.data());
        } else {
            rgba16_row(frame_, y, wide_.data());
            for (std::size_t i = 0; i < wide_.size(); ++i) {
                row_[2 * i] = static_cast<std::uint8_t>(wide_[i] >> 8);
                row_[2 * i + 1] = static_cast<std::uint8_t>(wide_[i]);
            }
        }
        const std::size_t at = block.size();
        block.resize(at + 1 + bytes_);
        block[at] = kFilterUp;
        std::uint8_t* to = block.data() + at + 1;
        for (std::size_t i = 0; i < bytes_; ++i) to[i] = static_cast<std::uint8_t>(row_[i] - above_[i]);
    }

  private:
    const host::Frame& frame_;
    const ImageOptions& options_;
    std::size_t bytes_;
    std::vector<std::uint16_t> wide_;
    std::vector<std::uint8_t> row_, above_;
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
    Rows rows(frame, options);
    Deflater deflater;
    std::vector<std::uint8_t> block;
    const auto out = [&](std::span<const std::uint8_t> bytes) { return png.chunk("IDAT", bytes); };
    for (int y = 0; y < frame.height; ++y) {
        rows.append(y, block);
        const bool last = y + 1 == frame.height;
        if (!last && block.size() < kBlock) continue;
        if (!deflater.add(block, last, out)) return false;
        block.clear();
    }
    return png.chunk("IEND", {});
}

}  // namespace zam::io
