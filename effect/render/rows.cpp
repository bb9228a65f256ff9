#include "effect/render/rows.h"

#include <cstdlib>
#include <cstring>

#include "effect/render/row_targets.h"

namespace zam {
namespace {

struct Available {
    RowTarget targets[3] = {{"scalar", 1, RenderRow_scalar}};
    std::size_t count = 1;

    Available() {
#ifdef ZAM_X86_TARGETS
        __builtin_cpu_init();
        const bool avx2 = __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma");
        const bool avx512 = avx2 && __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512dq") &&
                            __builtin_cpu_supports("avx512vl");
        if (avx2) targets[count++] = {"avx2", 4, RenderRow_avx2};
        if (avx512) targets[count++] = {"avx512", 8, RenderRow_avx512};
#endif
    }
};

const RowTarget& Choose() {
    const std::span<const RowTarget> targets = RowTargets();
    if (const char* cap = std::getenv("ZAM_TARGET")) {
        for (const RowTarget& target : targets) {
            if (std::strcmp(target.name, cap) == 0) return target;
        }
    }
    return targets.back();
}

}  // namespace

std::span<const RowTarget> RowTargets() {
    static const Available available;
    return {available.targets, available.count};
}

const RowTarget& ChosenTarget() {
    static const RowTarget& chosen = Choose();
    return chosen;
}

}  // namespace zam
