#pragma once
// Handles without a host: on macOS the system's Memory Manager, elsewhere small functions with its contract, whose
// blocks never move.
#include <cstddef>

#include "hostapi/types.h"

namespace zam::platform {

PF_Handle NewHandle(std::size_t bytes);  // null when there is no memory; contents undefined
void HLock(PF_Handle handle);
void HUnlock(PF_Handle handle);
void DisposeHandle(PF_Handle handle);  // of NewHandle; ours leaves another's block alone

}  // namespace zam::platform
