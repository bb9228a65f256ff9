#pragma once
// What a scene reader throws when a file cannot be used.
#include <stdexcept>
#include <string>

#include "host/text.h"

namespace zam::io {

// Where something stands in a text file; both count from 1, and line 0 stands for the file as a whole.
struct Place {
    int line = 0, column = 0;
};

// what() is "file:line:column: what is wrong", then a line "hint: the way out".
class SceneError : public std::runtime_error {
  public:
    SceneError(const std::string& file, Place place, const std::string& text, const std::string& hint)
        : std::runtime_error(describe(file, place) + ": " + text + "\nhint: " + hint) {}

    // "file:line:column", or the file's name alone; printable.
    static std::string describe(const std::string& file, Place place) {
        if (place.line == 0) return printable(file);
        return printable(file) + ":" + std::to_string(place.line) + ":" + std::to_string(place.column);
    }
};

}  // namespace zam::io
