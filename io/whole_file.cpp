#include "io/whole_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <filesystem>
#include <system_error>
#include <utility>

namespace zam::io {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kBuffer = 256 * 1024;

[[noreturn]] void fail(const std::string& file, const std::string& what, int code) {
    const char* hint = code == ENOSPC || code == EDQUOT || code == EFBIG
                           ? "free some space or write to another disk"
                           : "check the folder's permissions, or choose another with -o";
    throw WriteError(file + ": " + what + ": " + std::generic_category().message(code) + "\nhint: " + hint);
}

// How an open file without a name is told to the system.
std::string link_of(int descriptor) { return "/proc/self/fd/" + std::to_string(descriptor); }

// A file in `folder` that is gone when it is closed, unless it gets a name; -1 where there are no such files.
int open_nameless(const fs::path& folder) {
    const int descriptor =
        ::open(folder.empty() ? "." : folder.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, 0666);
    if (descriptor < 0 || ::access(link_of(descriptor).c_str(), F_OK) == 0) return descriptor;
    ::close(descriptor);
    return -1;
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

class WholeFile::Clock {
  public:
    explicit Clock(double& sum) : sum_(sum) {}
    ~Clock() { sum_ += std::chrono::duration<double>(std::chrono::steady_clock::now() - start_).count(); }
    Clock(const Clock&) = delete;
    Clock& operator=(const Clock&) = delete;

  private:
    double& sum_;
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

WholeFile::WholeFile(std::string file) : file_(std::move(file)) {
    const Clock clock(seconds_);
    int descriptor = open_nameless(fs::path(file_).parent_path());
    if (descriptor < 0) {
        part_ = file_ + ".part" + std::to_string(getpid());
        descriptor = ::open(part_.c_str(), O_CREAT | O_TRUNC | O_WRONLY | O_CLOEXEC, 0666);
    }
    if (descriptor < 0) fail(file_, "cannot write the file", errno);
    stream_ = ::fdopen(descriptor, "wb");
    if (!stream_) {
        const int code = errno;
        ::close(descriptor);
        if (!part_.empty()) ::unlink(part_.c_str());
        fail(file_, "cannot write the file", code);
    }
    std::setvbuf(stream_, nullptr, _IOFBF, kBuffer);
}

WholeFile::~WholeFile() {
    if (stream_) std::fclose(stream_);
    if (!part_.empty()) ::unlink(part_.c_str());
}

// Remembers the first failure.
bool WholeFile::check(bool good) noexcept {
    if (!good && failure_ == 0) failure_ = errno == 0 ? EIO : errno;
    return good;
}

bool WholeFile::write(const void* bytes, std::size_t count) noexcept {
    if (failure_ != 0) return false;
    const Clock clock(seconds_);
    errno = 0;
    position_ += count;
    size_ = std::max(size_, position_);
    return check(std::fwrite(bytes, 1, count, stream_) == count);
}

bool WholeFile::seek(std::uint64_t position) noexcept {
    if (failure_ != 0) return false;
    const Clock clock(seconds_);
    errno = 0;
    position_ = position;
    return check(::fseeko(stream_, static_cast<off_t>(position), SEEK_SET) == 0);
}

// A name cannot be given in place of another file, so a nameless one becomes a part first.
void WholeFile::give_name() {
    const std::string part = file_ + ".part" + std::to_string(getpid());
    ::unlink(part.c_str());
    const std::string link = link_of(fileno(stream_));
    if (check(::linkat(AT_FDCWD, link.c_str(), AT_FDCWD, part.c_str(), AT_SYMLINK_FOLLOW) == 0)) part_ = part;
}

void WholeFile::keep() {
    {
        const Clock clock(seconds_);
        errno = 0;
        if (failure_ == 0) check(std::fflush(stream_) == 0);
        if (failure_ == 0 && part_.empty()) give_name();
        check(std::fclose(std::exchange(stream_, nullptr)) == 0);
        if (failure_ == 0 && check(std::rename(part_.c_str(), file_.c_str()) == 0)) part_.clear();
    }
    if (failure_ != 0) fail(file_, "cannot write the file", failure_);
}

}  // namespace zam::io
