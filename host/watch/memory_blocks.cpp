#include "host/watch/memory_blocks.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "hostapi/constants.h"

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#include <sanitizer/asan_interface.h>
#define ZAM_FORBID(memory, bytes) __asan_poison_memory_region(memory, bytes)
#define ZAM_ALLOW(memory, bytes) __asan_unpoison_memory_region(memory, bytes)
#endif
#endif
#if !defined(ZAM_FORBID)  // nobody looks
#define ZAM_FORBID(memory, bytes)
#define ZAM_ALLOW(memory, bytes)
#endif

namespace zam::host {
namespace {

constexpr std::uint64_t kMostBytes = std::uint64_t{1} << 30;
constexpr std::size_t kGuard = 16;  // keeps the alignment that allocation gives
constexpr std::uint8_t kGuardByte = 0xC3, kFreshByte = 0xCD, kDeadByte = 0xDD;
constexpr std::size_t kMostDisposed = 256;

// Not an address that any program can have.
void* dead_pointer() { return reinterpret_cast<void*>(std::uintptr_t{0x5ADEADDEADDEADDE}); }

}  // namespace

void MemoryBlocks::place(Block& block, std::uint64_t size) {
    const auto bytes = static_cast<std::size_t>(size);
    std::unique_ptr<std::uint8_t[]> memory(new std::uint8_t[bytes + 2 * kGuard]);
    std::memset(memory.get(), kGuardByte, kGuard);
    std::memset(memory.get() + kGuard, kFreshByte, bytes);
    std::memset(memory.get() + kGuard + bytes, kGuardByte, kGuard);
    if (block.memory) {
        const auto before = static_cast<std::size_t>(block.size);
        std::memcpy(memory.get() + kGuard, block.memory.get() + kGuard, std::min(bytes, before));
        std::memset(block.memory.get(), kDeadByte, before + 2 * kGuard);
        ZAM_FORBID(block.memory.get(), before + 2 * kGuard);
        moved_away_.push_back({std::move(block.memory), before + 2 * kGuard});
    }
    block.memory = std::move(memory);
    block.master = block.memory.get() + kGuard;
    block.size = size;
}

void MemoryBlocks::check_guards(const Block& block, const char* when) {
    const auto damaged = [](std::uint8_t* guard) {
        const bool found =
            std::any_of(guard, guard + kGuard, [](std::uint8_t byte) { return byte != kGuardByte; });
        if (found) std::memset(guard, kGuardByte, kGuard);  // mended, so that it is reported once
        return found;
    };
    std::uint8_t* start = block.memory.get();
    if (damaged(start))
        ledger_.report(std::string("write before the start of a handle's block, seen ") + when);
    if (damaged(start + kGuard + block.size)) {
        ledger_.report("write past the end of a handle's block of " + std::to_string(block.size) +
                       " bytes, seen " + when);
    }
}

MemoryBlocks::Block& MemoryBlocks::find(PF_Handle handle) {
    if (!handle) throw Misuse{"null handle", PF_Err_BAD_CALLBACK_PARAM};
    const auto found = blocks_.find(handle);
    if (found != blocks_.end()) return *found->second;
    const bool was_ours = std::any_of(disposed_.begin(), disposed_.end(),
                                      [&](const auto& block) { return &block->master == handle; });
    throw Misuse{was_ours ? "expired handle" : "foreign handle", PF_Err_BAD_CALLBACK_PARAM};
}

PF_Handle MemoryBlocks::allocate(std::uint64_t size) {
    if (size > kMostBytes) {
        throw Misuse{"more than 1 GiB asked for (" + std::to_string(size) + " bytes)", PF_Err_OUT_OF_MEMORY};
    }
    auto block = std::make_unique<Block>();
    place(*block, size);
    PF_Handle handle = &block->master;
    blocks_.emplace(handle, std::move(block));
    return handle;
}

void* MemoryBlocks::lock(PF_Handle handle) {
    Block& block = find(handle);
    ++block.locks;
    return block.master;
}

void MemoryBlocks::unlock(PF_Handle handle) {
    Block& block = find(handle);
    if (block.locks == 0 && block.forgiven > 0) {
        --block.forgiven;
        return;
    }
    if (block.locks == 0) throw Misuse{"handle that is not locked", PF_Err_BAD_CALLBACK_PARAM};
    check_guards(block, "at an unlock");
    if (--block.locks == 0 && move_) place(block, block.size);
}

void MemoryBlocks::forgive_unlock(PF_Handle handle) {
    const auto found = blocks_.find(handle);
    if (found != blocks_.end()) ++found->second->forgiven;
}

void MemoryBlocks::dispose(PF_Handle handle) {
    Block& block = find(handle);
    check_guards(block, "at its disposal");
    std::memset(block.memory.get(), kDeadByte, static_cast<std::size_t>(block.size) + 2 * kGuard);
    block.memory.reset();
    block.master = dead_pointer();
    const auto found = blocks_.find(handle);
    disposed_.push_back(std::move(found->second));
    blocks_.erase(found);
    if (disposed_.size() > kMostDisposed) disposed_.pop_front();
}

std::uint64_t MemoryBlocks::size(PF_Handle handle) const {
    return const_cast<MemoryBlocks*>(this)->find(handle).size;
}

void MemoryBlocks::resize(PF_Handle handle, std::uint64_t size) {
    Block& block = find(handle);
    if (block.locks > 0) throw Misuse{"locked handle", PF_Err_BAD_CALLBACK_PARAM};
    if (size > kMostBytes) throw Misuse{"more than 1 GiB asked for", PF_Err_OUT_OF_MEMORY};
    place(block, size);
}

std::vector<std::uint8_t> MemoryBlocks::bytes(PF_Handle handle) const {
    const auto found = blocks_.find(handle);
    if (found == blocks_.end()) return {};
    const auto* start = found->second->memory.get() + kGuard;
    return {start, start + found->second->size};
}

void MemoryBlocks::balance(const std::vector<PF_Handle>& kept) {
    const std::string after(ledger_.command());
    for (const Left& left : moved_away_) {
        ZAM_ALLOW(left.memory.get(), left.bytes);
        const std::uint8_t *start = left.memory.get(), *end = start + left.bytes;
        if (std::any_of(start, end, [](std::uint8_t byte) { return byte != kDeadByte; }))
            ledger_.report("write to a handle's block after it moved, seen after " + after);
    }
    moved_away_.clear();
    for (auto& [handle, block] : blocks_) {
        check_guards(*block, ("after " + after).c_str());
        if (block->locks > 0) {
            ledger_.report("handle of " + std::to_string(block->size) + " bytes locked after " + after);
            block->locks = 0;
        }
        block->forgiven = 0;
        if (!block->charged && std::find(kept.begin(), kept.end(), handle) == kept.end()) {
            ledger_.report("handle of " + std::to_string(block->size) + " bytes held after " + after);
            block->charged = true;
        }
    }
}

}  // namespace zam::host
