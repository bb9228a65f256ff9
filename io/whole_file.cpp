#include "io/whole_file.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <system_error>
#include <utility>

#include "host/utf8_path.h"
#include "io/core_clock.h"
#include "io/part_file.h"

namespace zam::io {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kBuffer = 256 * 1024;

[[noreturn]] void fail(const std::string& file, const std::string& what, int code) {
    bool full = code == ENOSPC || code == EFBIG;
#ifdef EDQUOT
    full = full || code == EDQUOT;
#endif
    const char* hint = full ? "free some space or write to another disk"
                            : "check the folder's permissions, or choose another with -o";
    throw WriteError(file + ": " + what + ": " + std::generic_category().message(code) + "\nhint: " + hint);
}

}  // namespace

void make_folders_for(const std::string& file) {
    const fs::path folder = host::utf8_path(file).parent_path();
    if (folder.empty()) return;
    std::error_code code;
    fs::create_directories(folder, code);
    if (code) fail(folder.string(), "cannot make the folder", code.default_error_condition().value());
    if (!fs::is_directory(folder, code)) fail(folder.string(), "cannot write into it", ENOTDIR);
}

class WholeFile::Clock {
  public:
    explicit Clock(double& sum) : sum_(sum) {}
    ~Clock() { sum_ += core_seconds() - start_; }
    Clock(const Clock&) = delete;
    Clock& operator=(const Clock&) = delete;

  private:
    double& sum_;
    double start_ = core_seconds();
};

WholeFile::WholeFile(std::string file) : file_(std::move(file)) {
    const Clock clock(seconds_);
    stream_ = open_part(file_, &part_);
    if (!stream_) fail(file_, "cannot write the file", errno);
    std::setvbuf(stream_, nullptr, _IOFBF, kBuffer);
}

WholeFile::~WholeFile() {
    if (stream_) std::fclose(stream_);
    if (!part_.empty()) remove_part(part_);
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
    return check(seek_part(stream_, position));
}

// A name cannot be given in place of another file, so a nameless one becomes a part first.
void WholeFile::give_name() { check(name_part(stream_, file_, &part_)); }

void WholeFile::keep() {
    {
        const Clock clock(seconds_);
        errno = 0;
        if (failure_ == 0) check(std::fflush(stream_) == 0);
        if (failure_ == 0 && part_.empty()) give_name();
        check(std::fclose(std::exchange(stream_, nullptr)) == 0);
        if (failure_ == 0 && check(put_in_place(part_, file_))) part_.clear();
    }
    if (failure_ != 0) fail(file_, "cannot write the file", failure_);
}

}  // namespace zam::io
