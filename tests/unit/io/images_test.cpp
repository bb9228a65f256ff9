// Written images, read back by libpng's own reader.
#include "io/png_writer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <png.h>
#include <sys/resource.h>

#include <csignal>
#include <filesystem>

namespace zam::io {
namespace {

namespace fs = std::filesystem;

class Png : public testing::Test {
  protected:
    Png() { fs::create_directories(folder); }
    ~Png() override { fs::remove_all(folder); }
    fs::path folder = fs::temp_directory_path() / ("zam_png_" + std::to_string(getpid()));
};

host::Frame frame_of(host::Depth depth, int width, int height) {
    host::Frame frame;
    frame.width = width;
    frame.height = height;
    frame.depth = depth;
    const std::uint32_t full = depth == host::Depth::bits8 ? 255 : 32768;
    for (std::uint32_t i = 0; i < static_cast<std::uint32_t>(width * height * 4); ++i)
        frame.argb.push_back(static_cast<std::uint16_t>(i * 7919 % (full + 1)));
    frame.argb[0] = static_cast<std::uint16_t>(full);
    frame.argb[1] = 0;
    return frame;
}

struct Image {
    png_uint_32 width = 0, height = 0;
    int bits = 0, color_type = 0;
    std::vector<int> rgba;
};

Image read_png(const fs::path& file) {
    Image image;
    std::FILE* stream = std::fopen(file.c_str(), "rb");
    png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    png_init_io(png, stream);
    png_read_png(png, info, PNG_TRANSFORM_IDENTITY, nullptr);
    image.width = png_get_image_width(png, info);
    image.height = png_get_image_height(png, info);
    image.bits = png_get_bit_depth(png, info);
    image.color_type = png_get_color_type(png, info);
    png_bytepp rows = png_get_rows(png, info);
    const png_uint_32 samples = image.width * 4;
    for (png_uint_32 y = 0; y < image.height; ++y)
        for (png_uint_32 i = 0; i < samples; ++i)
            image.rgba.push_back(image.bits == 8 ? rows[y][i] : rows[y][2 * i] * 256 + rows[y][2 * i + 1]);
    png_destroy_read_struct(&png, &info, nullptr);
    std::fclose(stream);
    return image;
}

TEST_F(Png, EveryCodeComesBackInOrder) {
    for (const host::Depth depth : {host::Depth::bits8, host::Depth::bits16}) {
        const host::Frame frame = frame_of(depth, 37, 23);
        const fs::path file = folder / "image.png";
        write_png(file.string(), frame);
        const Image image = read_png(file);
        EXPECT_EQ(image.width, 37u);
        EXPECT_EQ(image.height, 23u);
        EXPECT_EQ(image.bits, depth == host::Depth::bits8 ? 8 : 16);
        EXPECT_EQ(image.color_type, PNG_COLOR_TYPE_RGBA);
        ASSERT_EQ(image.rgba.size(), frame.argb.size());
        for (std::size_t i = 0; i < image.rgba.size(); ++i) {
            const int code = frame.argb[i % 4 == 3 ? i - 3 : i + 1];  // red, green, blue, then alpha
            const int wide = static_cast<int>(std::lround(code * 65535.0 / 32768.0));
            ASSERT_EQ(image.rgba[i], depth == host::Depth::bits8 ? code : wide) << i;
        }
        EXPECT_EQ(image.rgba[3], depth == host::Depth::bits8 ? 255 : 65535);
    }
    EXPECT_EQ(std::distance(fs::directory_iterator(folder), {}), 1) << "an unfinished file was left";
}

std::string failure(const std::string& file) {
    try {
        make_folders_for(file);
        write_png(file, frame_of(host::Depth::bits16, 256, 256));
    } catch (const WriteError& error) {
        return error.what();
    }
    return {};
}

TEST_F(Png, FailuresNameTheFileAndLeaveNothingBehind) {
    EXPECT_EQ(failure(folder / "new/folders/a.png"), "");
    fs::create_directories(folder / "taken.png");
    EXPECT_THAT(failure(folder / "taken.png"), testing::AllOf(testing::HasSubstr("taken.png: cannot write"),
                                                              testing::HasSubstr("\nhint: ")));
    EXPECT_THAT(failure(folder / "new/folders/a.png/b.png"), testing::HasSubstr("a.png"));

    // A full disk, as far as one can be had: the system refuses to let a file grow.
    rlimit limit{};
    getrlimit(RLIMIT_FSIZE, &limit);
    const rlimit small{4096, limit.rlim_max};
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &small);
    const std::string full = failure(folder / "full.png");
    setrlimit(RLIMIT_FSIZE, &limit);
    std::signal(SIGXFSZ, handler);
    EXPECT_THAT(full, testing::AllOf(testing::HasSubstr("full.png"), testing::HasSubstr("free some space")));
    EXPECT_EQ(std::distance(fs::directory_iterator(folder), {}), 2) << "only what was there before";
}

}  // namespace
}  // namespace zam::io
