#pragma once
// The plug-in that is meant, and what it says.
#include <set>
#include <string>

#include "host/runner/session.h"

namespace CLI {
class App;
}

namespace zam::cli {

// Adds --plugin; `file` must outlive the parsing.
void add_plugin_option(CLI::App& command, std::string& file);

// The plug-in beside the program, unless one is given.
[[nodiscard]] std::string plugin_file(const std::string& given);

// Tells each warning of a run once.
class PluginAnswers {
  public:
    // Throws host::PluginError when the outcome of `command` is an error.
    void check(const host::Outcome& outcome, const std::string& command);

  private:
    std::set<std::string> told_;
};

}  // namespace zam::cli
