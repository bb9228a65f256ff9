#include "io/gltf/light_motion.h"

#include <limits>
#include <numbers>

namespace zam::io::gltf {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
// A cone needs some width; exporters animate spots open from nothing.
constexpr double kNarrowestCone = 1e-4;
constexpr double kRounding = 1e-5;  // of single precision, with some room

double confine(double value, double least, double most, bool* confined) {
    if (value < least - kRounding || value > most + kRounding) *confined = true;
    return std::clamp(value, least, most);
}

}  // namespace

LightMotion::LightMotion(Channels& channels, std::size_t index, const LightDefinition& definition)
    : fixed_(definition.values),
      color_(channels.track(Property::color, index)),
      intensity_(channels.track(Property::intensity, index)) {
    if (definition.type != host::LightType::parallel) range_ = channels.track(Property::range, index);
    if (definition.type == host::LightType::spot) {
        inner_angle_ = channels.track(Property::inner_angle, index);
        outer_angle_ = channels.track(Property::outer_angle, index);
    }
}

double LightMotion::work() const {
    double work = kLayerWork;
    for (const auto* track : {&color_, &intensity_, &range_, &inner_angle_, &outer_angle_})
        if (*track) work += (*track)->work();
    return work;
}

LightValues LightMotion::at(double seconds, bool* confined) const {
    LightValues values = fixed_;
    const auto number = [&](const std::optional<Track>& track, double least, double most, double* value) {
        if (track) *value = confine(track->at(seconds)[0], least, most, confined);
    };
    if (color_) {
        const Track::Value c = color_->at(seconds);
        values.color = {confine(c[0], 0.0, 1.0, confined), confine(c[1], 0.0, 1.0, confined),
                        confine(c[2], 0.0, 1.0, confined)};
    }
    number(intensity_, 0.0, kInfinity, &values.intensity);
    number(range_, 0.0, kInfinity, &values.range);
    number(outer_angle_, 0.0, std::numbers::pi / 2.0, &values.outer_angle);
    values.outer_angle = std::max(values.outer_angle, kNarrowestCone);
    number(inner_angle_, 0.0, kInfinity, &values.inner_angle);
    // The two angles have keys of their own and may meet on the way.
    values.inner_angle = std::min(values.inner_angle, values.outer_angle);
    return values;
}

}  // namespace zam::io::gltf
