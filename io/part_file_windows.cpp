#define WIN32_LEAN_AND_MEAN
#define NOMINMAX
#include <windows.h>

#include <cerrno>
#include <system_error>

#include "host/utf8_path.h"
#include "io/part_file.h"

namespace zam::io {
namespace {

bool told(bool good) {
    if (!good) {
        const std::error_code code(static_cast<int>(GetLastError()), std::system_category());
        const std::error_condition condition = code.default_error_condition();
        errno = condition.category() == std::generic_category() ? condition.value() : EIO;
    }
    return good;
}

}  // namespace

std::FILE* open_part(const std::string& file, std::string* part) {
    *part = file + ".part" + std::to_string(GetCurrentProcessId());
    std::FILE* stream = _wfopen(host::utf8_path(*part).c_str(), L"wb");
    if (!stream) part->clear();
    return stream;
}

bool seek_part(std::FILE* stream, std::uint64_t position) {
    return _fseeki64(stream, static_cast<std::int64_t>(position), SEEK_SET) == 0;
}

bool name_part(std::FILE*, const std::string&, std::string*) { return false; }  // all have one

bool put_in_place(const std::string& part, const std::string& file) {
    return told(MoveFileExW(host::utf8_path(part).c_str(), host::utf8_path(file).c_str(),
                            MOVEFILE_REPLACE_EXISTING) != 0);
}

void remove_part(const std::string& part) { _wunlink(host::utf8_path(part).c_str()); }

}  // namespace zam::io
