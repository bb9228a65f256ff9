#pragma once
// The checks of a plug-in file that need not load it.
#include <cstdint>
#include <optional>
#include <string>

#include "host/check/report.h"

namespace zam::host {

// The words that GLOBAL_SETUP must repeat.
struct ReportedWords {
    std::uint32_t version = 0, out_flags = 0, out_flags2 = 0;
};

struct StaticResult {
    std::string library;                   // the file to load: of a bundle, its executable
    std::string entry = "EntryPointFunc";  // name of the entry function on this system
    std::optional<ReportedWords> words;
    bool loadable = false;  // of this system and processor; `why_not` otherwise
    std::string why_not;
};

// `path` is a library, or a macOS bundle's folder. A library that holds no property resource is checked with the
// macOS resource file of its name beside it (Zam.rsrc beside Zam.so) if there is one.
StaticResult check_without_loading(const std::string& path, Report& report);

}  // namespace zam::host
