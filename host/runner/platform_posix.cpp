#include <dlfcn.h>
#ifdef __linux__
#include <sched.h>
#endif
#ifdef __APPLE__
#include <mach-o/dyld.h>
#endif

#include <algorithm>
#include <filesystem>
#include <thread>

#include "host/runner/platform.h"

namespace zam::host::platform {

void* load_library(const std::string& path, std::string* reason) {
    // A bare file name would be searched for in the system's library folders instead of here.
    const std::string place = path.find('/') == std::string::npos ? "./" + path : path;
    void* library = dlopen(place.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!library) {
        const char* text = dlerror();
        *reason = text ? text : "no reason given";
    }
    return library;
}

void* find_symbol(void* library, const char* name) { return dlsym(library, name); }

void unload_library(void* library) { dlclose(library); }

int usable_cores() {
#ifdef __linux__
    cpu_set_t set;
    CPU_ZERO(&set);
    if (sched_getaffinity(0, sizeof set, &set) == 0) return std::max(1, CPU_COUNT(&set));
#endif
    return std::max(1, static_cast<int>(std::thread::hardware_concurrency()));
}

std::string this_program() {
#ifdef __APPLE__
    char path[4096];
    std::uint32_t size = sizeof path;
    return _NSGetExecutablePath(path, &size) == 0 ? path : "";
#else
    std::error_code error;
    return std::filesystem::read_symlink("/proc/self/exe", error).string();
#endif
}

}  // namespace zam::host::platform
