// clang-format off: windows.h comes first
#define WIN32_LEAN_AND_MEAN
#include <windows.h>
// clang-format on
#include <cstdio>

#include "host/check/child_process.h"

namespace zam::host {
namespace {

// Quoted so that the C runtime of the other side takes it apart as it was.
std::string quoted(const std::string& argument) {
    std::string text = "\"";
    std::size_t slashes = 0;
    for (const char c : argument) {
        if (c == '"') text.append(slashes + 1, '\\');  // each slash before a quote counts double
        slashes = c == '\\' ? slashes + 1 : 0;
        text += c;
    }
    return text.append(slashes, '\\') + '"';
}

struct Handle {
    HANDLE handle = nullptr;
    explicit Handle(HANDLE owned) : handle(owned) {}
    ~Handle() { CloseHandle(handle); }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
};

}  // namespace

ChildEnd run_child(const std::vector<std::string>& command, std::chrono::milliseconds limit) {
    std::string line;
    for (const std::string& argument : command) {
        if (!line.empty()) line += ' ';
        line += quoted(argument);
    }
    SECURITY_ATTRIBUTES inherited{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
    const Handle nowhere(CreateFileA("NUL", GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                     &inherited, OPEN_EXISTING, 0, nullptr));
    STARTUPINFOA start{};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdInput = start.hStdOutput = start.hStdError = nowhere.handle;
    PROCESS_INFORMATION made{};
    if (!CreateProcessA(command.at(0).c_str(), line.data(), nullptr, nullptr, TRUE, CREATE_NO_WINDOW, nullptr,
                        nullptr, &start, &made))
        return {ChildEnd::How::not_started, 0, "error " + std::to_string(GetLastError())};
    const Handle process(made.hProcess), thread(made.hThread);
    if (WaitForSingleObject(process.handle, static_cast<DWORD>(limit.count())) == WAIT_TIMEOUT) {
        TerminateProcess(process.handle, 1);
        WaitForSingleObject(process.handle, INFINITE);
        return {ChildEnd::How::timed_out, 0, ""};
    }
    DWORD code = 0;
    GetExitCodeProcess(process.handle, &code);
    if (code >= 0x80000000) {  // the system's codes for what a process died of
        char text[32];
        std::snprintf(text, sizeof text, "exception 0x%08lX", static_cast<unsigned long>(code));
        return {ChildEnd::How::crashed, 0, text};
    }
    return {ChildEnd::How::exited, static_cast<int>(code), ""};
}

void prepare_for_crashes() {
    SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX | SEM_NOOPENFILEERRORBOX);
}

unsigned long this_process() { return GetCurrentProcessId(); }

}  // namespace zam::host
