#pragma once
// Handles without a host: small functions with the contract of the Memory Manager calls they are named after.
// A block never moves, so locking it takes nothing.
#include <cstddef>

#include "hostapi/types.h"

namespace zam::platform {

PF_Handle NewHandle(std::size_t bytes);  // null when there is no memory; zeroed
void HLock(PF_Handle handle);
void HUnlock(PF_Handle handle);
void DisposeHandle(PF_Handle handle);  // leaves a block alone that NewHandle did not make

}  // namespace zam::platform
