#pragma once
// What the fuzzing targets share. A target is a function over any bytes; clang's libFuzzer calls it with mutated seeds,
// replay.cpp with the seeds alone.
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "host/composition/composition.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace zam::fuzz {

// Ends the program, after saying what does not hold. Not an assert: optimised builds check as well.
void require(bool holds, const std::string& what);

// A refusal is one line, then at most one line "hint: ..."; short enough to be read, without control characters.
void require_clear_message(const std::string& message);
// The same of a single line: a warning or a note.
void require_clear_line(const std::string& line);

// All numbers are finite, also between keys, all references lead somewhere, all limits hold.
void require_valid(const host::Composition& composition);
void require_valid(const std::vector<host::ControlSetting>& settings);

// A file of these bytes, in a folder of this process alone. The name is the same each time.
std::string file_of(std::string_view bytes, const std::string& name);

inline std::string_view text_of(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

}  // namespace zam::fuzz
