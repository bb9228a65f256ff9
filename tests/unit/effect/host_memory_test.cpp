#include "effect/scene/host_memory.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "effect/scene/sequence_data.h"

namespace zam {
namespace {

PF_Handle new_foreign_handle(A_u_longlong bytes) {
    auto* master = static_cast<void**>(std::malloc(sizeof(void*)));
    *master = std::malloc(bytes);
    return master;
}
void* lock_foreign_handle(PF_Handle handle) { return *handle; }

TEST(HostMemory, EachOperationChoosesForItselfAndLeavesForeignBlocksAlone) {
    PF_UtilCallbacks utils{};
    PF_InData in_data{};
    in_data.utils = &utils;
    EXPECT_EQ(NewHostHandle(&in_data, ~std::size_t{0}), nullptr);  // by the platform
    utils.host_new_handle = new_foreign_handle;
    const PF_Handle handle = NewHostHandle(&in_data, kSequenceBytes);
    EXPECT_EQ(LockHostHandle(&in_data, handle), *handle);  // by the platform: dereferenced
    utils.host_lock_handle = lock_foreign_handle;
    EXPECT_EQ(LockHostHandle(&in_data, handle), *handle);
    WriteReachLayerId(*handle, -2);
    const auto* bytes = static_cast<const unsigned char*>(*handle);
    EXPECT_EQ(bytes[0], 0xFE);  // least significant byte first
    EXPECT_EQ(bytes[3], 0xFF);
    EXPECT_EQ(ReadReachLayerId(*handle), -2);
    UnlockHostHandle(&in_data, handle);
    DisposeHostHandle(&in_data, handle);  // the platform did not make it and does not free it
    std::free(*handle);
    std::free(handle);
}

}  // namespace
}  // namespace zam
