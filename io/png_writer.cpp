#include "io/png_writer.h"

#include <png.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csetjmp>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <system_error>
#include <vector>

namespace zam::io {
namespace {

namespace fs = std::filesystem;

constexpr int kCompression = 4;  // of 9; more takes much longer and saves little on smooth glows

[[noreturn]] void fail(const std::string& file, const std::string& what, int code) {
    const char* hint = code == ENOSPC || code == EDQUOT || code == EFBIG
                           ? "free some space or write to another disk"
                           : "check the folder's permissions, or choose another with -o";
    throw WriteError(file + ": " + what + ": " + std::generic_category().message(code) + "\nhint: " + hint);
}

// One pixel's codes in the order of the file, most significant byte first.
void store_row(const host::Frame& frame, int row, std::vector<png_byte>& bytes) {
    constexpr std::uint32_t kFull = 32768;
    const std::size_t width = static_cast<std::size_t>(frame.width);
    const std::uint16_t* argb = frame.argb.data() + static_cast<std::size_t>(row) * width * 4;
    std::size_t at = 0;
    for (std::size_t x = 0; x < width; ++x)
        for (const std::size_t channel : {1, 2, 3, 0}) {
            const std::uint32_t code = argb[x * 4 + channel];
            if (frame.depth == host::Depth::bits8) {
                bytes[at++] = static_cast<png_byte>(std::min<std::uint32_t>(code, 255));
                continue;
            }
            const std::uint32_t wide = (std::min(code, kFull) * 65535u + kFull / 2) / kFull;
            bytes[at++] = static_cast<png_byte>(wide >> 8);
            bytes[at++] = static_cast<png_byte>(wide & 0xFF);
        }
}

// libpng would print its own messages; ours say more.
void jump_on_error(png_structp png, png_const_charp) { png_longjmp(png, 1); }
void ignore_warning(png_structp, png_const_charp) {}

// libpng reports errors by a jump, which must not skip destructors: everything that has one lives in the
// caller, and what is set between setjmp and the jump is not read afterwards. `row` is scratch space. Returns
// false on an error; errno then tells which.
bool encode(std::FILE* stream, const host::Frame& frame, std::vector<png_byte>& row) {
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, jump_on_error, ignore_warning);
    if (!png) {
        errno = ENOMEM;
        return false;
    }
    png_infop info = png_create_info_struct(png);
    if (!info) {
        png_destroy_write_struct(&png, nullptr);
        errno = ENOMEM;
        return false;
    }
    if (setjmp(png_jmpbuf(png))) {
        const int code = errno;
        png_destroy_write_struct(&png, &info);
        errno = code;
        return false;
    }
    png_init_io(png, stream);
    png_set_compression_level(png, kCompression);
    const int bits = frame.depth == host::Depth::bits8 ? 8 : 16;
    png_set_IHDR(png, info, static_cast<png_uint_32>(frame.width), static_cast<png_uint_32>(frame.height),
                 bits, PNG_COLOR_TYPE_RGBA, PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
                 PNG_FILTER_TYPE_DEFAULT);
    png_write_info(png, info);
    for (int y = 0; y < frame.height; ++y) {
        store_row(frame, y, row);
        png_write_row(png, row.data());
    }
    png_write_end(png, info);
    png_destroy_write_struct(&png, &info);
    return true;
}

}  // namespace

void make_folders_for(const std::string& file) {
    const fs::path folder = fs::path(file).parent_path();
    if (folder.empty()) return;
    std::error_code code;
    fs::create_directories(folder, code);
    if (code) fail(folder.string(), "cannot make the folder", code.value());
    if (!fs::is_directory(folder, code)) fail(folder.string(), "cannot write into it", ENOTDIR);
}

void write_png(const std::string& file, const host::Frame& frame) {
    const std::size_t samples =
        static_cast<std::size_t>(frame.width) * static_cast<std::size_t>(frame.height) * 4;
    if (frame.width < 1 || frame.height < 1 || frame.argb.size() != samples)
        throw WriteError(file +
                         ": the frame has no pixels, or not as many as its size says\n"
                         "hint: the plug-in gave no image");
    // Written beside its place, so that nobody finds half an image under the final name.
    const std::string unfinished = file + ".part" + std::to_string(getpid());
    errno = 0;
    std::FILE* stream = std::fopen(unfinished.c_str(), "wb");
    if (!stream) fail(file, "cannot write the image", errno);
    std::vector<png_byte> row(static_cast<std::size_t>(frame.width) * 4 *
                              (frame.depth == host::Depth::bits8 ? 1 : 2));
    errno = 0;
    bool written = encode(stream, frame, row);
    int code = errno;
    if (written && std::fflush(stream) != 0) {
        written = false;
        code = errno;
    }
    if (std::fclose(stream) != 0 && written) {
        written = false;
        code = errno;
    }
    if (written && std::rename(unfinished.c_str(), file.c_str()) != 0) {
        written = false;
        code = errno;
    }
    if (written) return;
    std::remove(unfinished.c_str());
    fail(file, "cannot write the image", code == 0 ? EIO : code);
}

}  // namespace zam::io
