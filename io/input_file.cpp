#include "io/input_file.h"

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <system_error>

#include "host/utf8_path.h"
#include "io/scene_error.h"

namespace zam::io {

namespace fs = std::filesystem;

void require_file(const std::string& file) {
    std::error_code code;
    const fs::file_status status = fs::status(host::utf8_path(file), code);
    if (fs::exists(status) && !fs::is_regular_file(status) && !fs::is_directory(status))
        throw SceneError(file, {}, "this is a pipe or a device, not a file",
                         "write what comes out of it into a file first");
}

std::string read_file(const std::string& file, std::size_t limit) {
    require_file(file);
    errno = 0;
    std::ifstream stream(host::utf8_path(file), std::ios::binary);
    std::string content;
    if (stream) {
        // In pieces, so that a file that grows without an end is cut off as well.
        char piece[1 << 16];
        while (content.size() <= limit && (stream.read(piece, sizeof piece) || stream.gcount() > 0))
            content.append(piece, static_cast<std::size_t>(stream.gcount()));
    }
    if (!stream.is_open() || stream.bad()) {
        const int code = errno;
        throw SceneError(file, {}, "cannot read the file: " + std::generic_category().message(code),
                         "check the name and the permissions");
    }
    if (content.size() > limit)
        throw SceneError(file, {}, "larger than " + std::to_string(limit >> 20) + " MiB",
                         "a scene is text; keep geometry and textures in files of their own");
    return content;
}

}  // namespace zam::io
