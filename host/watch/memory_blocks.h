#pragma once
// The memory that the handle callbacks give out. A handle is the address of a master pointer; only handles
// known here are ever followed. Blocks have guard bytes on both sides, start with a pattern, and may be moved
// at their last unlock.
#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "host/watch/ledger.h"

namespace zam::host {

class MemoryBlocks {
  public:
    explicit MemoryBlocks(Ledger& ledger) : ledger_(ledger) {}
    void move_when_unlocked(bool on) { move_ = on; }

    // Null when there is no memory for it; asking for more than 1 GiB is a misuse. All others throw Misuse
    // for handles that are null, foreign or disposed of.
    PF_Handle allocate(std::uint64_t size);
    void* lock(PF_Handle handle);
    void unlock(PF_Handle handle);
    void forgive_unlock(PF_Handle handle);  // one more in this command, after a lock that was made to fail
    void dispose(PF_Handle handle);
    std::uint64_t size(PF_Handle handle) const;
    void resize(PF_Handle handle, std::uint64_t size);

    [[nodiscard]] bool knows(PF_Handle handle) const { return blocks_.contains(handle); }
    [[nodiscard]] std::vector<std::uint8_t> bytes(PF_Handle handle) const;

    // After a command: locks still on, damaged guards, writes to where a block no longer is, and blocks that nobody
    // will ever dispose of become reports. `kept` are the handles that may live on.
    void balance(const std::vector<PF_Handle>& kept);

  private:
    struct Block {
        void* master = nullptr;  // first member: its address is the handle
        std::unique_ptr<std::uint8_t[]> memory;
        std::uint64_t size = 0;
        int locks = 0;
        int forgiven = 0;
        bool charged = false;  // reported after an earlier command
    };
    void place(Block& block, std::uint64_t size);
    void check_guards(const Block& block, const char* when);
    Block& find(PF_Handle handle);

    Ledger& ledger_;
    bool move_ = false;
    std::unordered_map<PF_Handle, std::unique_ptr<Block>> blocks_;
    // The last disposed ones, so that neither handles nor blocks come back at the same address at once.
    std::deque<std::unique_ptr<Block>> disposed_;
    struct Left {
        std::unique_ptr<std::uint8_t[]> memory;
        std::size_t bytes = 0;
    };
    std::vector<Left> moved_away_;  // overwritten, and nobody's until the command ends
};

}  // namespace zam::host
