#include "io/images/image.h"

#include <cctype>
#include <filesystem>

namespace zam::io {

std::optional<ImageFormat> format_of(const std::string& file) {
    std::string extension = std::filesystem::path(file).extension().string();
    for (char& c : extension) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    if (extension == ".png") return ImageFormat::png;
    if (extension == ".exr") return ImageFormat::exr;
    if (extension == ".tif" || extension == ".tiff") return ImageFormat::tiff;
    return std::nullopt;
}

std::vector<int> bits_of(ImageFormat format) {
    return format == ImageFormat::exr ? std::vector<int>{16, 32} : std::vector<int>{8, 16};
}

}  // namespace zam::io
