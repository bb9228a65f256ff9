#pragma once
// The opaque handles that suites give out: keys, never addresses. A key names its kind, the session and
// command it was made in, and what it stands for, so every misuse of one can be told apart without following
// it. The number is no address a program can have: an effect that follows a handle stops at once.
#include <atomic>
#include <cstdint>

#include "host/watch/ledger.h"
#include "hostapi/constants.h"

namespace zam::host {

enum class HandleKind : std::uint8_t { layer = 1, comp, item, stream, effect, instance };

class HandleKeys {
  public:
    HandleKeys()
        : now_(kMark << 56 | std::uint64_t{next_session().fetch_add(1) & kCounterMask} << kSessionShift) {}

    // Handles are good for one command: those of earlier ones expire.
    void next_command() { now_ = (now_ & ~kCommandMask) | ((now_ + kOneCommand) & kCommandMask); }

    template <class Handle>
    [[nodiscard]] Handle make(HandleKind kind, std::uint32_t payload) const {
        return reinterpret_cast<Handle>(static_cast<std::uintptr_t>(prefix(kind) | payload));
    }

    // The payload; throws Misuse for a handle that is null, foreign or from an earlier command.
    template <class Handle>
    [[nodiscard]] std::uint32_t payload(HandleKind kind, Handle handle) const {
        const auto key = static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(handle));
        if ((key ^ now_) >> kPayloadBits == std::uint64_t{static_cast<std::uint8_t>(kind)}
                                                << (kKindShift - kPayloadBits)) [[likely]]
            return static_cast<std::uint32_t>(key);
        if (!handle) throw misuse("null ", kind);
        const bool is_ours = ((key ^ prefix(kind)) & ~(kPayloadMask | kCommandMask)) == 0;
        throw misuse(is_ours ? "expired " : "foreign ", kind);
    }

    static Misuse misuse(const char* how, HandleKind kind) {
        static constexpr const char* kNames[] = {"handle",      "layer handle", "composition handle",
                                                 "item handle", "stream",       "effect reference",
                                                 "effect_ref"};
        return {std::string(how) + kNames[static_cast<int>(kind)], PF_Err_BAD_CALLBACK_PARAM};
    }

  private:
    // From the top: mark (8 bits), kind (4), session (10), command (10), payload (32).
    static constexpr std::uint64_t kMark = 0x5A;
    static constexpr int kKindShift = 52, kSessionShift = 42, kPayloadBits = 32;
    static constexpr std::uint32_t kCounterMask = 0x3FF;
    static constexpr std::uint64_t kPayloadMask = 0xFFFFFFFF, kOneCommand = std::uint64_t{1} << kPayloadBits,
                                   kCommandMask = kCounterMask * kOneCommand;

    [[nodiscard]] std::uint64_t prefix(HandleKind kind) const {
        return now_ | std::uint64_t{static_cast<std::uint8_t>(kind)} << kKindShift;
    }
    static std::atomic<std::uint32_t>& next_session() {
        static std::atomic<std::uint32_t> number{1};
        return number;
    }

    std::uint64_t now_;  // mark, session and command in their places
};

}  // namespace zam::host
