#pragma once
// A plug-in file, loaded by path.
#include <stdexcept>
#include <string>

#include "hostapi/effect.h"

namespace zam::host {

// Thrown for everything that is wrong with a plug-in file or its answers; the text says what, where and what
// to do.
struct PluginError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// Owns the loaded file: every session made with it must be gone before it is.
class Plugin {
  public:
    // Throws PluginError. The entry point's name is the one that the plug-in's property resource gives.
    explicit Plugin(const std::string& path, const std::string& entry_point = "EntryPointFunc");
    ~Plugin();
    Plugin(const Plugin&) = delete;
    Plugin& operator=(const Plugin&) = delete;

    [[nodiscard]] PF_EntryPointFunc entry() const { return entry_; }
    [[nodiscard]] const std::string& path() const { return path_; }
    [[nodiscard]] void* symbol(const char* name) const;  // null when the file does not export it

  private:
    std::string path_;
    void* library_ = nullptr;
    PF_EntryPointFunc entry_ = nullptr;
};

}  // namespace zam::host
