// The system's own Memory Manager.
#include "effect/scene/platform_memory.h"

// As the system's headers declare them, where they are marked as deprecated; they are in CoreServices.
extern "C" {
char** NewHandle(long bytes);
void HLock(char** handle);
void HUnlock(char** handle);
void DisposeHandle(char** handle);
}

namespace zam::platform {
namespace {

char** system_handle(PF_Handle handle) { return reinterpret_cast<char**>(handle); }

}  // namespace

PF_Handle NewHandle(std::size_t bytes) {
    const long size = static_cast<long>(bytes);
    return size < 0 ? nullptr : reinterpret_cast<PF_Handle>(::NewHandle(size));
}

void HLock(PF_Handle handle) { ::HLock(system_handle(handle)); }

void HUnlock(PF_Handle handle) { ::HUnlock(system_handle(handle)); }

void DisposeHandle(PF_Handle handle) { ::DisposeHandle(system_handle(handle)); }

}  // namespace zam::platform
