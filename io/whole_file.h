#pragma once
// Files that appear under their name only when they are whole.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <stdexcept>
#include <string>

namespace zam::io {

// The text names the file and what the system said, then a line "hint: ..." with the way out.
struct WriteError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// Makes the folders on the way to `file`; throws WriteError.
void make_folders_for(const std::string& file);

// Bytes are collected in the file's own folder, without a name where the file system can do that, else as
// "name.partPID". Whatever ends the object, or the program, before keep() leaves nothing of them but, at worst,
// that part.
class WholeFile {
  public:
    // Throws WriteError.
    explicit WholeFile(std::string file);
    ~WholeFile();
    WholeFile(const WholeFile&) = delete;
    WholeFile& operator=(const WholeFile&) = delete;

    // Throw nothing, for they are called from within C libraries; false after any failure, which keep() tells of.
    bool write(const void* bytes, std::size_t count) noexcept;
    bool seek(std::uint64_t position) noexcept;
    [[nodiscard]] std::uint64_t position() const noexcept { return position_; }
    [[nodiscard]] std::uint64_t size() const noexcept { return size_; }

    // Puts the file under its name, in place of one that is there. Throws WriteError for any failure so far.
    void keep();

    // Spent on a core in the system's calls so far, if one thread made them all.
    [[nodiscard]] double seconds_on_disk() const { return seconds_; }

  private:
    class Clock;
    bool check(bool good) noexcept;
    void give_name();

    std::string file_;
    std::string part_;  // its name until then; empty: it has none
    std::FILE* stream_ = nullptr;
    std::uint64_t position_ = 0, size_ = 0;
    int failure_ = 0;  // errno of the first failure
    double seconds_ = 0.0;
};

}  // namespace zam::io
