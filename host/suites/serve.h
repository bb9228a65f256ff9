#pragma once
// The one door for calls from an effect, and the answer of the calls behind which nothing stands.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <mutex>
#include <string>
#include <string_view>
#include <type_traits>

#include "host/runner/instance.h"
#include "hostapi/constants.h"
#include "hostapi/scene_values.h"

namespace zam::host {

// The interface's name of a call: what stands after the table's short name.
inline std::string_view function_name(std::string_view call) { return call.substr(call.find('.') + 1); }

enum class Door {
    locked,       // one callback at a time
    open,         // other callbacks come in meanwhile: for calls that call back
    giving_back,  // locked; a planned failure takes the thing back all the same, for the effect has done its
                  // part
};

// The answer to what a body threw; called while that is being handled. Takes the lock for a report.
A_Err answer_to_failure(Instance& instance, std::string_view name,
                        std::unique_lock<std::mutex>& lock) noexcept;

// Runs `body(instance)` for the call `name`, "Table.Function" and a literal. Misuse becomes an error code and a
// report, a refusal a code only; nothing is thrown at the effect. While nobody watches the calls and only one
// thread can make any, that is all: no lock and no note.
template <class Body>
A_Err serve(std::string_view name, Body&& body, Door door = Door::locked) noexcept {
    Instance* instance = Instance::current();
    if (!instance) [[unlikely]]
        return PF_Err_INVALID_CALLBACK;
    if (!instance->attended.load(std::memory_order_relaxed)) [[likely]] {
        try {
            body(*instance);
            return A_Err_NONE;
        } catch (...) {
            std::unique_lock lock(instance->gate, std::defer_lock);
            return answer_to_failure(*instance, name, lock);
        }
    }
    std::unique_lock lock(instance->gate, std::defer_lock);
    try {
        lock.lock();
        const Fault planned = instance->log.enter(name);
        if (planned.code) instance->log.met();
        if (planned.code && planned.results == Fault::Results::untouched && door != Door::giving_back)
            return planned.code;
        const Instance::Spoiling spoiling(*instance, door == Door::locked ? planned : Fault{});
        if (door == Door::open) lock.unlock();
        body(*instance);
        return planned.code;
    } catch (...) {
        return answer_to_failure(*instance, name, lock);
    }
}

// What an effect must have given.
template <class T>
T& required(T* what) {
    if (!what) throw Misuse{"null result", PF_Err_BAD_CALLBACK_PARAM};
    return *what;
}

// One of the interface's buffers for names, of which there is no type.
struct NameBuffer {
    A_char text[AEGP_MAX_LAYER_NAME_SIZE];
};

// Spoils the first result of a call as it was planned, and ends the call there.
template <class T>
void spoil(Instance& in, T& result) {
    constexpr bool is_handle = std::is_pointer_v<T>, is_name = std::is_same_v<T, NameBuffer>;
    constexpr bool names_stream = std::is_same_v<T, AEGP_StreamValue>;  // that has to be given back
    const Fault& fault = *in.spoiling;
    const bool with_null = fault.results == Fault::Results::null;
    if (with_null && !is_handle && !is_name) return;
    if (fault.results == Fault::Results::wrong && (is_handle || names_stream)) return;
    std::memset(static_cast<void*>(&result), with_null ? 0 : fault.byte, sizeof result);
    if constexpr (std::is_same_v<T, A_Time>) result.scale |= 1;  // 0 is no scale at all
    if (!fault.code) in.log.met();
    throw Refusal{fault.code};
}

// Where a result goes. To be asked for before anything is lent or changed.
template <class T>
T& result(T* where) {
    T& to = required(where);
    Instance* in = Instance::current();
    if (in && in->spoiling) [[unlikely]]
        spoil(*in, to);
    return to;
}

// Copies a text into one of the interface's name buffers of 32 bytes, cut to 31; a null buffer is not wanted.
inline void write_name(A_char* buffer, std::string_view text) {
    if (!buffer) return;
    if (Instance* in = Instance::current(); in && in->spoiling)
        spoil(*in, reinterpret_cast<NameBuffer&>(*buffer));
    const std::size_t length = std::min<std::size_t>(text.size(), AEGP_MAX_LAYER_NAME_SIZE - 1);
    std::copy_n(text.data(), length, buffer);
    buffer[length] = '\0';
}

// A name given by the effect, cut to 31 characters; no more of it is read.
inline std::string read_name(const A_char* text) {
    if (!text) throw Misuse{"null name", PF_Err_BAD_CALLBACK_PARAM};
    const A_char* end = std::find(text, text + AEGP_MAX_LAYER_NAME_SIZE - 1, '\0');
    return {text, end};
}

// unserved<"Layer.AEGP_AddLayer"> fits a slot of any function type: it notes the call and answers an error.
template <std::size_t N>
struct CallName {
    char text[N]{};
    constexpr CallName(const char (&name)[N]) { std::copy_n(name, N, text); }  // NOLINT: a literal is a name
};

template <CallName Name>
struct Unserved {
    template <class... A>
    static A_Err call(A...) {
        return serve(std::string_view(Name.text), [](Instance& in) {
            in.ledger.missing(std::string(function_name(Name.text)));
            throw Refusal{PF_Err_INVALID_CALLBACK};
        });
    }
    template <class... A>
    using Function = A_Err (*)(A...);
    template <class... A>
    constexpr operator Function<A...>() const {  // NOLINT: this is its purpose
        return &call<A...>;
    }
};

template <CallName Name>
inline constexpr Unserved<Name> unserved{};

}  // namespace zam::host
