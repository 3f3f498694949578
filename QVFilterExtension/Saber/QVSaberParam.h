#pragma once

#include <optional>
#include <vector>

#include "Platform/Drawing/UIImage.h"
#include "QVFilterExtension/MTIFilters/Bezier/QVBezierLineColor.h"

namespace qv {

/// The look of one glowing line and of the noise that it flickers with.
struct QVSaberParam {
    float aspectRatio = 0;  ///< how many times longer than wide the grains of the noise are, along its flow
    int complexity = 0;     ///< octaves of the noise, 1..6
    float direction = 0;    ///< where the noise flows, degrees anticlockwise from the right
    int distortType = 0;    ///< kind of noise: 0 wisps, 1 waves, 3 jags, others none
    float distortion = 0;   ///< how far the noise moves the line, longer sides of the picture
    float noiseScale = 0;   ///< grains of the noise along the longer side
    float noiseSpeed = 0;   ///< how fast the noise flows, longer sides a second
    float thickness = 0;    ///< of the line, longer sides of the mask
    UIImage colorImage;     ///< colours of the line; nil: those of `colArray`
    std::optional<std::vector<QVBezierLineColor>> colArray;  ///< ramp across the line, from its middle
};

}  // namespace qv
