#include "effect/scene/platform_memory.h"

#include <cstdlib>
#include <limits>

namespace zam::platform {
namespace {

// The master pointer, and right behind it the block: that is also how one of our own handles is told from
// another's.
struct alignas(std::max_align_t) Header {
    void* master = nullptr;
};

void* BlockOf(PF_Handle handle) { return reinterpret_cast<char*>(handle) + sizeof(Header); }

}  // namespace

PF_Handle NewHandle(std::size_t bytes) {
    if (bytes > std::numeric_limits<std::size_t>::max() - sizeof(Header)) return nullptr;
    const auto handle = static_cast<PF_Handle>(std::calloc(1, sizeof(Header) + bytes));
    if (handle) *handle = BlockOf(handle);
    return handle;
}

void HLock(PF_Handle) {}

void HUnlock(PF_Handle) {}

void DisposeHandle(PF_Handle handle) {
    if (handle && *handle == BlockOf(handle)) std::free(handle);
}

}  // namespace zam::platform
