#include "host/runner/plugin.h"

#include <filesystem>

#include "host/runner/platform.h"
#include "host/utf8_path.h"

namespace zam::host {

Plugin::Plugin(const std::string& path, const std::string& entry_point) : path_(path) {
    std::error_code error;
    if (!std::filesystem::exists(utf8_path(path), error)) {
        throw PluginError(path +
                          ": no such file; give the path of a plug-in, for example build/release/Zam.so");
    }
    std::string reason;
    library_ = platform::load_library(path, &reason);
    if (!library_) throw PluginError(path + ": not a loadable library: " + reason);
    entry_ = reinterpret_cast<PF_EntryPointFunc>(platform::find_symbol(library_, entry_point.c_str()));
    if (!entry_) {
        platform::unload_library(library_);
        throw PluginError(path + ": not an effect: the library exports no " + entry_point);
    }
}

Plugin::~Plugin() {
    if (library_) platform::unload_library(library_);
}

void* Plugin::symbol(const char* name) const { return platform::find_symbol(library_, name); }

}  // namespace zam::host
