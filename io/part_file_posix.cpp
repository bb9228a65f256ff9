#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>

#include "io/part_file.h"

namespace zam::io {
namespace {

namespace fs = std::filesystem;

std::string part_name(const std::string& file) { return file + ".part" + std::to_string(getpid()); }

// How an open file without a name is told to the system.
std::string link_of(int descriptor) { return "/proc/self/fd/" + std::to_string(descriptor); }

// A file in `folder` that is gone when it is closed, unless it gets a name; -1 where there are no such files.
int open_nameless([[maybe_unused]] const fs::path& folder) {
#ifdef O_TMPFILE
    const int descriptor =
        ::open(folder.empty() ? "." : folder.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, 0666);
    if (descriptor < 0 || ::access(link_of(descriptor).c_str(), F_OK) == 0) return descriptor;
    ::close(descriptor);
#endif
    return -1;
}

}  // namespace

std::FILE* open_part(const std::string& file, std::string* part) {
    int descriptor = open_nameless(fs::path(file).parent_path());
    if (descriptor < 0) {
        *part = part_name(file);
        descriptor = ::open(part->c_str(), O_CREAT | O_TRUNC | O_WRONLY | O_CLOEXEC, 0666);
    }
    if (descriptor < 0) {
        part->clear();
        return nullptr;
    }
    std::FILE* stream = ::fdopen(descriptor, "wb");
    if (!stream) {
        const int code = errno;
        ::close(descriptor);
        if (!part->empty()) ::unlink(part->c_str());
        errno = code;
    }
    return stream;
}

bool seek_part(std::FILE* stream, std::uint64_t position) {
    return ::fseeko(stream, static_cast<off_t>(position), SEEK_SET) == 0;
}

bool name_part(std::FILE* stream, const std::string& file, std::string* part) {
    const std::string link = link_of(fileno(stream)), name = part_name(file);
    ::unlink(name.c_str());
    if (::linkat(AT_FDCWD, link.c_str(), AT_FDCWD, name.c_str(), AT_SYMLINK_FOLLOW) != 0) return false;
    *part = name;
    return true;
}

bool put_in_place(const std::string& part, const std::string& file) {
    return std::rename(part.c_str(), file.c_str()) == 0;
}

void remove_part(const std::string& part) { ::unlink(part.c_str()); }

}  // namespace zam::io
