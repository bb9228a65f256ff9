#define WIN32_LEAN_AND_MEAN
#define NOMINMAX
#include <windows.h>

#include <algorithm>
#include <bit>
#include <filesystem>

#include "host/runner/platform.h"
#include "host/utf8_path.h"

namespace zam::host::platform {
namespace {

// One line of UTF-8 in the user's language.
std::string text_of(DWORD code) {
    wchar_t text[512] = {};
    DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, code,
                                  0, text, static_cast<DWORD>(std::size(text)), nullptr);
    while (length > 0 && (text[length - 1] <= L' ' || text[length - 1] == L'.')) --length;
    const std::string number = "Windows error " + std::to_string(code);
    return length == 0 ? number
                       : std::filesystem::path(std::wstring(text, length)).string() + " (" + number + ")";
}

}  // namespace

void* load_library(const std::string& path, std::string* reason) {
    // The whole path, so that nothing is searched for, and the plug-in's folder for what it needs.
    std::error_code error;
    std::filesystem::path place = std::filesystem::absolute(utf8_path(path), error);
    place.make_preferred();
    if (!place.has_extension()) place += L".";  // or the loader puts .dll behind the name
    // Of a damaged file the loader would speak in a box, and wait.
    DWORD before = 0;
    SetThreadErrorMode(SEM_FAILCRITICALERRORS, &before);
    HMODULE library = LoadLibraryExW(place.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    if (!library) *reason = text_of(GetLastError());
    SetThreadErrorMode(before, nullptr);
    return library;
}

void* find_symbol(void* library, const char* name) {
    return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(library), name));
}

void unload_library(void* library) { FreeLibrary(static_cast<HMODULE>(library)); }

int usable_cores() {
    DWORD_PTR own = 0, all = 0;
    GetProcessAffinityMask(GetCurrentProcess(), &own, &all);
    return std::max(1, std::popcount(own));
}

std::string this_program() {
    wchar_t path[32768];
    const DWORD length = GetModuleFileNameW(nullptr, path, static_cast<DWORD>(std::size(path)));
    return std::filesystem::path(std::wstring(path, length < std::size(path) ? length : 0)).string();
}

}  // namespace zam::host::platform
