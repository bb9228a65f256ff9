#include "host/suites/serve.h"

#include <new>

namespace zam::host {

A_Err answer_to_failure(Instance& instance, std::string_view name,
                        std::unique_lock<std::mutex>& lock) noexcept {
    try {
        try {
            throw;
        } catch (const Misuse& misuse) {
            if (!lock.owns_lock()) lock.lock();
            instance.ledger.report(misuse.what + " in " + std::string(function_name(name)));
            return misuse.code;
        } catch (const Refusal& refusal) {
            return refusal.code;
        } catch (const std::bad_alloc&) {
            return A_Err_ALLOC;
        }
    } catch (...) {
        return A_Err_GENERIC;
    }
}

}  // namespace zam::host
