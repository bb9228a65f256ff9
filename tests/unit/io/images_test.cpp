// Written images, read back by the libraries' own readers.
#include <ImfArray.h>
#include <ImfChannelList.h>
#include <ImfRgbaFile.h>
#include <ImfStandardAttributes.h>
#include <ImfStringAttribute.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>
#include <zlib.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "io/images/deflate.h"
#include "io/images/png_reader.h"
#include "io/images/samples.h"
#include "io/images/write_image.h"
#include "io/over.h"
#include "io/scene_error.h"
#include "tests/unit/message_of.h"

#include <tiffio.h>  // last: it deprecates int32, a name of the host's interface

namespace zam::io {
namespace {

namespace fs = std::filesystem;
using host::Depth;

const Metadata kFacts{12, {24000, 1001}, {1, 1}, "zam 1.2.3", "0123abcd"};

class Images : public testing::Test {
  protected:
    Images() { fs::create_directories(folder); }
    ~Images() override { fs::remove_all(folder); }
    [[nodiscard]] std::string path(const std::string& name) const { return (folder / name).string(); }
    fs::path folder = fs::temp_directory_path() / ("zam_images_" + std::to_string(getpid()));
};

int full_of(Depth depth) { return depth == Depth::bits8 ? 255 : 32768; }

host::Frame frame_of(Depth depth, int width, int height) {
    host::Frame frame;
    frame.width = width;
    frame.height = height;
    frame.depth = depth;
    const auto codes = static_cast<std::uint32_t>(full_of(depth)) + 1;
    const auto count = static_cast<std::uint32_t>(width * height * 4);
    for (std::uint32_t i = 0; i < count; ++i)  // what does not compress, then what does
        frame.argb.push_back(
            static_cast<std::uint16_t>((i < count / 2 ? i * 2654435761u >> 9 : i >> 7) % codes));
    frame.argb[0] = static_cast<std::uint16_t>(codes - 1);
    frame.argb[1] = 0;
    return frame;
}

std::string bytes_of(const std::string& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

// Samples in the order of the file.
std::vector<int> read_tiff(const std::string& file, std::string* description) {
    TIFF* tiff = TIFFOpen(file.c_str(), "r");
    if (!tiff) return {};
    std::uint32_t width = 0, height = 0;
    std::uint16_t bits = 0, extras = 0, *extra = nullptr;
    char* text = nullptr;
    TIFFGetField(tiff, TIFFTAG_IMAGEWIDTH, &width);
    TIFFGetField(tiff, TIFFTAG_IMAGELENGTH, &height);
    TIFFGetField(tiff, TIFFTAG_BITSPERSAMPLE, &bits);
    TIFFGetField(tiff, TIFFTAG_EXTRASAMPLES, &extras, &extra);
    TIFFGetField(tiff, TIFFTAG_IMAGEDESCRIPTION, &text);
    EXPECT_EQ(extras, 1);
    EXPECT_EQ(extra[0], EXTRASAMPLE_UNASSALPHA);
    *description = text;
    std::vector<int> samples;
    std::vector<std::uint16_t> row(static_cast<std::size_t>(TIFFScanlineSize(tiff)));
    for (std::uint32_t y = 0; y < height; ++y) {
        EXPECT_EQ(TIFFReadScanline(tiff, row.data(), y, 0), 1);
        const auto* bytes = reinterpret_cast<const std::uint8_t*>(row.data());
        for (std::size_t i = 0; i < width * 4; ++i) samples.push_back(bits == 8 ? bytes[i] : row[i]);
    }
    TIFFClose(tiff);
    return samples;
}

TEST_F(Images, PngHoldsEveryCode) {
    // Wide enough for several pieces of compressed data.
    for (const auto& [width, height] : {std::pair(37, 23), std::pair(1, 1), std::pair(700, 300)})
        for (const Depth depth : {Depth::bits8, Depth::bits16}) {
            const host::Frame frame = frame_of(depth, width, height);
            write_image(path("a.png"), frame, kFacts, {.bits = depth == Depth::bits8 ? 8 : 16});
            PngReader reader(path("a.png"));
            EXPECT_EQ(reader.width(), width);
            EXPECT_EQ(reader.height(), height);
            EXPECT_EQ(reader.read(depth).argb, frame.argb);
        }
    const std::string bytes = bytes_of(path("a.png"));
    using namespace std::string_literals;
    for (const std::string& text :
         {"Frame\0"s + "12", "Time\0"s + "0.5005 s", "Software\0zam 1.2.3"s, "Scene Digest\0"s + "0123abcd"})
        EXPECT_NE(bytes.find(text), std::string::npos) << text;
    EXPECT_EQ(bytes.find("tIME"), std::string::npos);
}

TEST_F(Images, TiffHoldsEveryCode) {
    for (const Depth depth : {Depth::bits8, Depth::bits16}) {
        const host::Frame frame = frame_of(depth, 613, 701);  // more than one strip
        write_image(path("a.tif"), frame, kFacts,
                    {.format = ImageFormat::tiff, .bits = depth == Depth::bits8 ? 8 : 16});
        std::string description;
        const std::vector<int> samples = read_tiff(path("a.tif"), &description);
        EXPECT_EQ(description, "frame 12, time 0.5005 s, scene digest 0123abcd");
        ASSERT_EQ(samples.size(), frame.argb.size());
        for (std::size_t i = 0; i < samples.size(); ++i) {
            const int code = frame.argb[i % 4 == 3 ? i - 3 : i + 1];  // red, green, blue, then alpha
            const int wide = static_cast<int>(std::lround(code * 65535.0 / 32768.0));
            ASSERT_EQ(samples[i], depth == Depth::bits8 ? code : wide) << i;
        }
    }
}

TEST_F(Images, ExrIsPremultipliedAndLinearIfWanted) {
    const host::Frame frame = frame_of(Depth::bits16, 90, 70);
    for (const int bits : {16, 32})
        for (const bool linear : {true, false}) {
            write_image(path("a.exr"), frame, kFacts,
                        {.format = ImageFormat::exr, .bits = bits, .linear = linear});
            Imf::RgbaInputFile file(path("a.exr").c_str());
            const Imf::Header& header = file.header();
            EXPECT_EQ(header.channels().findChannel("A")->type, bits == 16 ? Imf::HALF : Imf::FLOAT);
            EXPECT_EQ(header.typedAttribute<Imf::StringAttribute>("sceneDigest").value(), "0123abcd");
            EXPECT_EQ(Imf::framesPerSecond(header).n, 24000);
            EXPECT_EQ(Imf::hasChromaticities(header), linear);
            Imf::Array2D<Imf::Rgba> pixels(frame.height, frame.width);
            file.setFrameBuffer(&pixels[0][0], 1, static_cast<std::size_t>(frame.width));
            file.readPixels(0, frame.height - 1);
            for (int i = 0; i < frame.width * frame.height; ++i) {
                const std::uint16_t* argb = &frame.argb[static_cast<std::size_t>(i) * 4];
                const Imf::Rgba& pixel = pixels[i / frame.width][i % frame.width];
                const float alpha = static_cast<float>(argb[0] / 32768.0);
                const auto expected = [&](int code) {
                    const double v = code / 32768.0;
                    const double lin = v <= 0.04045 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
                    return half(static_cast<float>(linear ? lin : v) * alpha);
                };
                ASSERT_EQ(pixel.a, half(alpha));
                ASSERT_EQ(pixel.r, expected(argb[1])) << i;
                ASSERT_EQ(pixel.g, expected(argb[2])) << i;
                ASSERT_EQ(pixel.b, expected(argb[3])) << i;
            }
        }
}

TEST(Samples, DitherIsRightOnTheMeanAndLeavesTheEndsAlone) {
    host::Frame frame{8, 8, Depth::bits16, std::vector<std::uint16_t>(8 * 8 * 4), {}};
    for (const int code : {0, 1, 64, 5000, 16384, 20001, 32767, 32768}) {
        std::fill(frame.argb.begin(), frame.argb.end(), static_cast<std::uint16_t>(code));
        double sum = 0.0;
        int least = 255, most = 0;
        for (int y = 0; y < 8; ++y) {
            std::uint8_t row[32];
            rgba8_row(frame, y, true, row);
            for (const int sample : row) {
                sum += sample / 256.0;
                least = std::min(least, sample);
                most = std::max(most, sample);
            }
            rgba8_row(frame, y, false, row);
            EXPECT_EQ(row[5], std::lround(code * 255.0 / 32768.0));
        }
        EXPECT_NEAR(sum, code * 255.0 / 32768.0, 0.5 / 64) << code;
        EXPECT_LE(most - least, 1) << code;
        EXPECT_TRUE(code != 0 || most == 0);
        EXPECT_TRUE(code != 32768 || least == 255);
    }
}

TEST(Over, MixturesAreRoundedAndNotCutOff) {
    for (std::uint16_t alpha = 0; alpha < 256; ++alpha) {
        host::Frame frame{1, 1, Depth::bits8, {alpha, 100, 255, 0}, {}};
        lay_over(host::Color{0, 0, 1}, &frame);
        EXPECT_EQ(frame.argb[1], std::lround(100 * alpha / 255.0)) << alpha;
        EXPECT_EQ(frame.argb[3], 255 - alpha);
    }
}

std::string failure(const std::string& file) {
    return message_of<WriteError>([&] {
        make_folders_for(file);
        write_image(file, frame_of(Depth::bits16, 256, 256), kFacts,
                    {.format = *format_of(file), .bits = 16});
    });
}

TEST_F(Images, FailuresNameTheFileAndLeaveNothingBehind) {
    for (const std::string end : {".png", ".exr", ".tif"}) {
        EXPECT_EQ(failure(path("new/folders/a" + end)), "");
        fs::create_directories(path("taken" + end));
        EXPECT_THAT(failure(path("taken" + end)),
                    testing::AllOf(testing::HasSubstr("taken" + end + ": cannot write"),
                                   testing::HasSubstr("\nhint: ")));
        EXPECT_THAT(failure(path("new/folders/a" + end + "/b" + end)), testing::HasSubstr("a" + end));
    }
    EXPECT_EQ(std::distance(fs::directory_iterator(folder), {}), 4) << "only what was there before";
}

// Streams shorter than the compressor looks ahead, as long, and longer; one after the other, whole and in pieces.
TEST(Deflater, GivesBackEveryLengthInPiecesOfAnySize) {
    Deflater deflater;
    for (const std::size_t piece : {17U, 288U, 289U, 290U, 1000000U})
        for (const std::size_t length : {0U, 1U, 17U, 288U, 289U, 290U, 700U, 700001U}) {
            std::vector<std::uint8_t> plain(length), packed;
            for (std::size_t i = 0; i < length; ++i)
                plain[i] = static_cast<std::uint8_t>(i % 97 < 60 ? 128 : i * i / 7);
            std::size_t at = 0;
            do {
                const std::size_t taken = std::min(piece, length - at);
                const auto ready = deflater.add({plain.data() + at, taken}, at + taken == length);
                packed.insert(packed.end(), ready.begin(), ready.end());
                at += taken;
            } while (at < length);
            std::vector<std::uint8_t> read(length + 1);
            uLongf got = read.size();
            ASSERT_EQ(uncompress(read.data(), &got, packed.data(), packed.size()), Z_OK)
                << length << " by " << piece;
            read.resize(got);
            EXPECT_EQ(read, plain) << length << " by " << piece;
        }
}

TEST_F(Images, PicturesThatCannotBeReadAreToldOf) {
    write_image(path("a.png"), frame_of(Depth::bits8, 64, 64), kFacts, {});
    const std::string whole = bytes_of(path("a.png"));
    std::string damaged = whole;
    damaged[damaged.size() / 2] ^= 1;
    for (const std::string& bytes : {whole.substr(0, whole.size() / 2), damaged}) {
        std::ofstream(path("a.png"), std::ios::binary) << bytes;
        const auto read = [&] { return PngReader(path("a.png")).read(Depth::bits8); };
        EXPECT_THAT(message_of<SceneError>(read), testing::HasSubstr("a.png: "));
    }
}

}  // namespace
}  // namespace zam::io
