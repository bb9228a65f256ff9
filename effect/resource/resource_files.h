#pragma once
// The files that carry a property list to a host.
#include <string>

#include "effect/resource/property_list.h"

namespace zam::resource {

// A resource script for a Windows resource compiler: type PIPL, id kPropertyListId, raw data.
[[nodiscard]] std::string windows_script(const Bytes& list);

// A classic macOS resource file with the one resource, to be kept in the data fork.
[[nodiscard]] Bytes macos_file(const Bytes& list);

}  // namespace zam::resource
