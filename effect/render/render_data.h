#pragma once
// One frame as the rows see it: built by Render, only read while rows are rendered, by several threads at
// once.
#include "effect/render/kernels/rays.h"
#include "effect/render/kernels/records.h"
#include "hostapi/effect.h"

namespace zam {

struct _RenderData {
    PF_InData* inData = nullptr;
    double aspectOverDownsampleX = 0.0;
    double invDownsampleY = 0.0;
    double invZoom = 0.0;
    A_long width = 0, height = 0;                        // of the output, pixels
    A_long deep = 0;                                     // 1: 16 bits per channel
    _OptPointData* optPoint = nullptr;                   // null when no point lights are kept
    _OptSpotData* optSpot = nullptr;                     // null when no spot lights are kept
    double softK = 1.0, softKSq = 1.0, softKRoot = 2.0;  // k = softness in percent + 1; k^2; 2 k^(1/4)
    double spotScale = 60.0;
    _LightData* pointData = nullptr;
    _LightData* spotData = nullptr;
    _VisLightStruct* pointLights = nullptr;
    _VisLightStruct* spotLights = nullptr;
    A_long look = 0;  // a Look
    double invGamma = 1.0;

    [[nodiscard, gnu::always_inline]] PixelRays rays() const {
        return {invZoom, aspectOverDownsampleX, invDownsampleY, width, height};
    }
};

}  // namespace zam
