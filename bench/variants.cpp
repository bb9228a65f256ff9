#include "bench/variants.h"

#include <algorithm>

#include "tests/literal/literal_renderer.h"

namespace zam::bench {

std::vector<Variant> Targets() {
    std::vector<Variant> targets;
    for (const RowTarget& target : RowTargets())
        targets.push_back({target.name, target.lanes, target.render});
    return targets;
}

std::vector<Variant> LiteralAndTargets() {
    std::vector<Variant> all = Targets();
    all.insert(all.begin(), {"literal", 0, [](const _RenderData& frame, A_long y, PF_Pixel* out) {
                                 literal::PixelFunc(const_cast<_RenderData*>(&frame), 0, y, nullptr, out);
                             }});
    return all;
}

Variant ChosenVariant() {
    const RowTarget& chosen = ChosenTarget();
    return {chosen.name, chosen.lanes, chosen.render};
}

Rows::Rows(const literal::Scene& scene, A_long count)
    : frame_(scene),
      count_(std::clamp(count, 1, scene.height)),
      row_bytes_(static_cast<std::size_t>(scene.width) * frame_.pixel_bytes()),
      pixels_(row_bytes_ * static_cast<std::size_t>(count_)) {}

void Rows::RenderRow(const Variant& variant, A_long index) const {
    const double height = frame_.data().height;
    const auto y = static_cast<A_long>((index + 0.5) * height / count_);
    variant.render(
        frame_.data(), y,
        reinterpret_cast<PF_Pixel*>(pixels_.data() + row_bytes_ * static_cast<std::size_t>(index)));
}

void Rows::Render(const Variant& variant) const {
    for (A_long i = 0; i < count_; ++i) RenderRow(variant, i);
}

}  // namespace zam::bench
