#include "host/runner/plugin.h"

#include <dlfcn.h>

#include <filesystem>

namespace zam::host {
namespace {

std::string last_loader_error() {
    const char* text = dlerror();
    return text ? text : "no reason given";
}

}  // namespace

Plugin::Plugin(const std::string& path, const std::string& entry_point) : path_(path) {
    std::error_code error;
    if (!std::filesystem::exists(path, error)) {
        throw PluginError(path +
                          ": no such file; give the path of a plug-in, for example build/release/Zam.so");
    }
    // A bare file name would be searched for in the system's library folders instead of here.
    const std::string place = path.find('/') == std::string::npos ? "./" + path : path;
    library_ = dlopen(place.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!library_) throw PluginError(path + ": not a loadable library: " + last_loader_error());
    entry_ = reinterpret_cast<PF_EntryPointFunc>(dlsym(library_, entry_point.c_str()));
    if (!entry_) {
        dlclose(library_);
        throw PluginError(path + ": not an effect: the library exports no " + entry_point);
    }
}

Plugin::~Plugin() {
    if (library_) dlclose(library_);
}

void* Plugin::symbol(const char* name) const { return dlsym(library_, name); }

}  // namespace zam::host
