// PNG plates. Their chunks have checksums, which no mutation would meet: a copy of each input has them mended.
#include <zlib.h>

#include <algorithm>

#include "io/images/png_reader.h"
#include "io/scene_error.h"
#include "tests/fuzz/target.h"

namespace {

using namespace zam;

std::string with_checksums(std::string bytes) {
    const auto byte = [&](std::size_t at) { return static_cast<unsigned char>(bytes[at]); };
    for (std::size_t at = 8; at + 12 <= bytes.size();) {
        const std::size_t length = std::size_t{byte(at)} << 24 | std::size_t{byte(at + 1)} << 16 |
                                   std::size_t{byte(at + 2)} << 8 | byte(at + 3);
        if (length > bytes.size() - at - 12) break;
        const auto sum =
            crc32(0, reinterpret_cast<const Bytef*>(bytes.data()) + at + 4, static_cast<uInt>(length + 4));
        for (std::size_t i = 0; i < 4; ++i)
            bytes[at + 8 + length + i] = static_cast<char>(sum >> (24 - 8 * i) & 0xFF);
        at += length + 12;
    }
    return bytes;
}

void read(const std::string& bytes) {
    try {
        io::PngReader reader(fuzz::file_of(bytes, "plate.png"));
        fuzz::require(reader.width() > 0 && reader.height() > 0, "size");
        const host::Frame frame = reader.read(host::Depth::bits16);
        const std::size_t pixels =
            static_cast<std::size_t>(frame.width) * static_cast<std::size_t>(frame.height);
        fuzz::require(frame.argb.size() == 4 * pixels, "pixels");
        fuzz::require(*std::max_element(frame.argb.begin(), frame.argb.end()) <= 32768, "codes");
    } catch (const io::SceneError& error) {
        fuzz::require_clear_message(error.what());
    }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(fuzz::text_of(data, size));
    read(bytes);
    if (const std::string mended = with_checksums(bytes); mended != bytes) read(mended);
    return 0;
}
