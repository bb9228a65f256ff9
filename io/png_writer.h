#pragma once
// Rendered frames as PNG files.
#include <stdexcept>
#include <string>

#include "host/runner/session.h"

namespace zam::io {

// The text names the file and what the system said, then a line "hint: ..." with the way out.
struct WriteError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// Makes the folders on the way to `file`; throws WriteError.
void make_folders_for(const std::string& file);

// RGBA with straight alpha, 8 or 16 bits per channel as the frame has them; 32768 becomes 65535. The file
// appears under its name only when it is complete; one that is there already is replaced. Throws WriteError.
void write_png(const std::string& file, const host::Frame& frame);

}  // namespace zam::io
