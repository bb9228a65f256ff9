#pragma once
// The checks of a plug-in that load it and send it commands. They may crash, hang or end the process: it should be
// one of their own.
#include <string>

namespace zam::host {

// Writes what it finds to the journal file; the last line tells that it came to its end.
void drive_plugin(const std::string& library, const std::string& entry, const std::string& journal);

}  // namespace zam::host
