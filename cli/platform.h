#pragma once
// What the program asks the operating system for; one file of definitions for each family.
#include <cstdio>

namespace zam::cli::platform {

inline constexpr const char* kPluginName =
#ifdef _WIN32
    "Zam.aex";
#else
    "Zam.so";
#endif

// Makes console and program speak UTF-8 to each other, where they do not anyway, and a file that grows beyond the
// process's limit an error to tell of, not the program's end.
void prepare_process();

// A terminal on which a line can be taken back.
[[nodiscard]] bool is_terminal(std::FILE* stream);
[[nodiscard]] int terminal_columns(std::FILE* stream);  // 0: not known

// Has the first signal that asks to stop handled, and the second end the program.
void on_first_interrupt(void (*handler)(int));

}  // namespace zam::cli::platform
