#include "io/images/png_reader.h"

#include <png.h>

#include <bit>
#include <cerrno>
#include <csetjmp>
#include <cstdio>
#include <filesystem>
#include <new>
#include <system_error>
#include <vector>

#include "io/input_file.h"
#include "io/scene_error.h"

namespace zam::io {
namespace {

void jump_on_error(png_structp png, png_const_charp) { png_longjmp(png, 1); }
void ignore_warning(png_structp, png_const_charp) {}

constexpr const char* kDamaged = "the picture is damaged or cut short";
constexpr const char* kExportAgain = "copy or export it again";
constexpr png_uint_32 kLargestSide = 30000;  // pixels, as a composition's
// Deflate makes at most 1032 bytes of one.
constexpr std::uint64_t kMostExpansion = 1032;

}  // namespace

// libpng reports errors by a jump, which must not skip destructors: every call that may jump stands in a function that
// has none to run.
struct PngReader::State {
    explicit State(const std::string& name) : file(name) {
        require_file(file);
        stream = std::fopen(file.c_str(), "rb");
        if (!stream) {
            const std::string said = std::generic_category().message(errno);
            throw SceneError(file, {}, "cannot read the picture: " + said,
                             "check the name and the permissions");
        }
        png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, jump_on_error, ignore_warning);
        info = png ? png_create_info_struct(png) : nullptr;
    }
    ~State() {
        png_destroy_read_struct(&png, &info, nullptr);
        if (stream) std::fclose(stream);
    }
    State(const State&) = delete;
    State& operator=(const State&) = delete;

    // All pixels become red, green, blue, alpha of 16 bits.
    bool read_head() {
        if (setjmp(png_jmpbuf(png))) return false;
        png_init_io(png, stream);
        png_set_user_limits(png, kLargestSide, kLargestSide);
        png_set_chunk_cache_max(png, 1);  // keeps no texts; others are passed over
        png_read_info(png, info);
        width = static_cast<int>(png_get_image_width(png, info));
        height = static_cast<int>(png_get_image_height(png, info));
        png_set_expand_16(png);
        png_set_gray_to_rgb(png);
        png_set_add_alpha(png, 0xFFFF, PNG_FILLER_AFTER);
        if (std::endian::native == std::endian::little) png_set_swap(png);
        return true;
    }

    // Can the file hold its pixels? Asked before there is memory for them.
    bool holds_pixels() {
        const std::uint64_t needed =
            std::uint64_t{png_get_rowbytes(png, info)} * static_cast<std::uint64_t>(height);
        std::error_code code;
        const std::uint64_t size = std::filesystem::file_size(file, code);
        return !code && size >= needed / kMostExpansion;
    }

    bool read_rows(png_bytep* rows) {
        if (setjmp(png_jmpbuf(png))) return false;
        png_set_interlace_handling(png);
        png_read_update_info(png, info);
        if (png_get_rowbytes(png, info) != static_cast<std::size_t>(width) * 8) return false;
        png_read_image(png, rows);
        png_read_end(png, nullptr);
        return true;
    }

    std::string file;
    std::FILE* stream;
    png_structp png = nullptr;
    png_infop info = nullptr;
    int width = 0, height = 0;
};

PngReader::PngReader(const std::string& file) : state_(std::make_unique<State>(file)) {
    if (!state_->info) throw std::bad_alloc();
    if (!state_->read_head())
        throw SceneError(file, {},
                         "this is no PNG file of at most 30000 x 30000 pixels, or its head is damaged",
                         "export the picture again as PNG");
}
PngReader::~PngReader() = default;

int PngReader::width() const { return state_->width; }
int PngReader::height() const { return state_->height; }

host::Frame PngReader::read(host::Depth depth) {
    State& s = *state_;
    if (!s.holds_pixels()) throw SceneError(s.file, {}, kDamaged, kExportAgain);
    const std::size_t row_samples = static_cast<std::size_t>(s.width) * 4;
    std::vector<std::uint16_t> rgba(row_samples * static_cast<std::size_t>(s.height));
    std::vector<png_bytep> rows;
    for (std::size_t y = 0; y < static_cast<std::size_t>(s.height); ++y)
        rows.push_back(reinterpret_cast<png_bytep>(rgba.data() + row_samples * y));
    if (!s.read_rows(rows.data())) throw SceneError(s.file, {}, kDamaged, kExportAgain);
    const std::uint32_t full = depth == host::Depth::bits8 ? 255 : 32768;
    host::Frame frame;
    frame.width = s.width;
    frame.height = s.height;
    frame.depth = depth;
    frame.argb.resize(rgba.size());
    for (std::size_t at = 0; at < rgba.size(); at += 4)
        for (std::size_t channel = 0; channel < 4; ++channel)
            frame.argb[at + (channel + 1) % 4] =
                static_cast<std::uint16_t>((rgba[at + channel] * full + 32767) / 65535);
    return frame;
}

}  // namespace zam::io
