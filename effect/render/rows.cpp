#include "effect/render/rows.h"

#include <cstdlib>
#include <string_view>

#include "effect/render/row_targets.h"

namespace zam {
namespace {

// How wide the target of this name is, whether or not it was compiled in; of an unknown name, as wide as any.
int LanesOfTarget(std::string_view name) {
    return name == "scalar" ? 1 : name == "neon" ? 2 : name == "avx2" ? 4 : 8;
}

class Available {
  public:
    Available() {
        Add("scalar", RenderRow_scalar);
#if defined(ZAM_ROWS_NEON)
        Add("neon", RenderRow_neon);
#endif
#if defined(ZAM_ROWS_AVX2) || defined(ZAM_ROWS_AVX512)
        __builtin_cpu_init();
        const bool avx2 = __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma");
#endif
#if defined(ZAM_ROWS_AVX2)
        if (avx2) Add("avx2", RenderRow_avx2);
#endif
#if defined(ZAM_ROWS_AVX512)
        if (avx2 && __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512dq") &&
            __builtin_cpu_supports("avx512vl")) {
            Add("avx512", RenderRow_avx512);
        }
#endif
    }

    [[nodiscard]] std::span<const RowTarget> Targets() const { return {targets_, count_}; }

  private:
    void Add(const char* name, RowFunc render) { targets_[count_++] = {name, LanesOfTarget(name), render}; }

    RowTarget targets_[4] = {};
    std::size_t count_ = 0;
};

}  // namespace

std::span<const RowTarget> RowTargets() {
    static const Available available;
    return available.Targets();
}

const RowTarget& TargetWithin(std::span<const RowTarget> targets, const char* cap) {
    const int most = cap ? LanesOfTarget(cap) : targets.back().lanes;
    const RowTarget* widest = &targets.front();
    for (const RowTarget& target : targets) {
        if (target.lanes <= most) widest = &target;
    }
    return *widest;
}

const RowTarget& ChosenTarget() {
    static const RowTarget& chosen = TargetWithin(RowTargets(), std::getenv("ZAM_TARGET"));
    return chosen;
}

}  // namespace zam
