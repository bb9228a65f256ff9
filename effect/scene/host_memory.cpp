#include "effect/scene/host_memory.h"

#include "effect/scene/platform_memory.h"

namespace zam {

PF_Handle NewHostHandle(PF_InData* in_data, std::size_t bytes) {
    const auto callback = in_data->utils->host_new_handle;
    return callback ? callback(bytes) : platform::NewHandle(bytes);
}

void* LockHostHandle(PF_InData* in_data, PF_Handle handle) {
    if (!handle) return nullptr;
    const auto callback = in_data->utils->host_lock_handle;
    if (callback) return callback(handle);
    platform::HLock(handle);
    return *handle;
}

void UnlockHostHandle(PF_InData* in_data, PF_Handle handle) {
    if (!handle) return;
    const auto callback = in_data->utils->host_unlock_handle;
    callback ? callback(handle) : platform::HUnlock(handle);
}

void DisposeHostHandle(PF_InData* in_data, PF_Handle handle) {
    if (!handle) return;
    const auto callback = in_data->utils->host_dispose_handle;
    callback ? callback(handle) : platform::DisposeHandle(handle);
}

}  // namespace zam
