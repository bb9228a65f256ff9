#define WIN32_LEAN_AND_MEAN
#define NOMINMAX
#include <io.h>
#include <windows.h>

#include <csignal>
#include <initializer_list>

#include "cli/platform.h"

namespace zam::cli::platform {
namespace {

HANDLE console_of(std::FILE* stream) { return reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(stream))); }

}  // namespace

void prepare_process() { SetConsoleOutputCP(CP_UTF8); }

// As a side effect the console obeys escape sequences from now on.
bool is_terminal(std::FILE* stream) {
    DWORD mode = 0;
    const HANDLE console = console_of(stream);
    return GetConsoleMode(console, &mode) &&
           SetConsoleMode(console, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
}

int terminal_columns(std::FILE* stream) {
    CONSOLE_SCREEN_BUFFER_INFO info{};
    if (!GetConsoleScreenBufferInfo(console_of(stream), &info)) return 0;
    return info.srWindow.Right - info.srWindow.Left + 1;
}

// The C library forgets a handler before it calls it.
void on_first_interrupt(void (*handler)(int)) {
    for (const int signal : {SIGINT, SIGTERM, SIGBREAK}) std::signal(signal, handler);
}

}  // namespace zam::cli::platform
