#pragma once
// Blocks of host memory. Every operation uses the host's callback where the host supplies it and the
// platform's own function where it does not, decided each time. A null handle is left alone: it is what a
// failed allocation gives.
#include <cstddef>
#include <memory>
#include <new>

#include "hostapi/effect.h"

namespace zam {

PF_Handle NewHostHandle(PF_InData* in_data, std::size_t bytes);  // null when there is no memory
void* LockHostHandle(PF_InData* in_data, PF_Handle handle);      // the block's address while it is locked
void UnlockHostHandle(PF_InData* in_data, PF_Handle handle);
void DisposeHostHandle(PF_InData* in_data, PF_Handle handle);  // locked or not

// Keeps somebody's block locked. get() is null when there is no block or the host would not lock it.
class LockedHandle {
  public:
    LockedHandle(PF_InData* in_data, PF_Handle handle)
        : in_data_(in_data), handle_(handle), block_(LockHostHandle(in_data, handle)) {}
    ~LockedHandle() {
        if (block_) UnlockHostHandle(in_data_, handle_);
    }
    LockedHandle(const LockedHandle&) = delete;
    LockedHandle& operator=(const LockedHandle&) = delete;

    [[nodiscard]] void* get() const { return block_; }

  private:
    PF_InData* in_data_;
    PF_Handle handle_;
    void* block_;
};

// An array of plain records in a host block, locked as long as it lives.
template <class Record>
class HostArray {
  public:
    explicit HostArray(PF_InData* in_data) : in_data_(in_data) {}
    ~HostArray() {
        if (records_) UnlockHostHandle(in_data_, handle_);
        DisposeHostHandle(in_data_, handle_);
    }
    HostArray(const HostArray&) = delete;
    HostArray& operator=(const HostArray&) = delete;

    // `count` records, all at their defaults. False, and no records, when there is no memory for them.
    bool Allocate(std::size_t count) {
        handle_ = NewHostHandle(in_data_, count * sizeof(Record));
        records_ = static_cast<Record*>(LockHostHandle(in_data_, handle_));
        if (records_) std::uninitialized_value_construct_n(records_, count);
        return records_ != nullptr;
    }
    [[nodiscard]] Record* get() const { return records_; }

  private:
    PF_InData* in_data_;
    PF_Handle handle_ = nullptr;
    Record* records_ = nullptr;
};

}  // namespace zam
