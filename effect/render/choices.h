#pragma once
// The choices of the controls that the renderer acts on, in the order of their popups (1-based).
#include "effect/render/kernels/look.h"     // Look
#include "effect/render/kernels/records.h"  // PointModel, SpotModel

namespace zam {

// "Off" in both model popups.
inline constexpr std::int32_t kModelOff = 1;
static_assert(PointModel{kModelOff} == PointModel::off && SpotModel{kModelOff} == SpotModel::off);

// "Individual Radius" and "Individual Reach": what of each light changes its own size.
enum class Individual : std::int32_t { none = 1, intensity, shadow_darkness, shadow_diffusion };

// "Use Lights that are".
enum class Switches : std::int32_t { on = 1, off, on_or_off };

// "Name starts with".
enum class NamePrefix : std::int32_t { anything = 1, zam, front, back };

}  // namespace zam
