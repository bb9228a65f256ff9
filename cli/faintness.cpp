#include "cli/faintness.h"

#include "hostapi/constants.h"

namespace zam::cli {
namespace {

constexpr std::size_t kSeenShare = 200;  // one pixel in so many
constexpr int kSeenAlpha = 10;           // with more than one part in so many of full alpha

}  // namespace

void Faintness::look_at(const host::Frame& light) {
    ++frames_;
    if (seen_) return;
    const int full = light.depth == host::Depth::bits8 ? 255 : PF_MAX_CHAN16;
    std::size_t seen = 0;
    int most = 0;
    for (std::size_t i = 0; i < light.argb.size(); i += 4) {
        const int alpha = light.argb[i];
        most = alpha > most ? alpha : most;
        seen += alpha * kSeenAlpha > full ? 1 : 0;
    }
    if (most > 0) lit_ = true;
    if (seen * kSeenShare > light.argb.size() / 4) seen_ = true;
}

std::string Faintness::note(const std::string& scene) const {
    if (frames_ == 0 || seen_) return "";
    if (!lit_)
        return "no light is in these frames\nhint: zam info " + scene +
               " tells which lights take part, and why";
    return "the light is faint: in every frame fewer than 1 pixel in 200 is more than 10 % opaque\n"
           "hint: --preset stage-beams shows more of it, or raise \"Spot Lights/Intensity\" by --set";
}

}  // namespace zam::cli
