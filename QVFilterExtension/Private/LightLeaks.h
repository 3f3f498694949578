#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Platform/ImageGraph/MTIImage.h"
#include "QVFilterExtension/Private/LightParam.h"

namespace qv {

/// Light that falls on film through gaps of the camera. It comes in periods of 0.6 seconds, each one of nine
/// sequences of six pictures, a tenth of a second each.

/// File names of the 27 pictures: 23 red ones, then 4 blue ones.
std::vector<std::string> lightLeakNames();

/// The picture of a moment, the sequence of its period being drawn from the period's number. Nothing in a
/// period without light, whose share falls from 95 % at a strength of 0 to none at 1, and in a pause. A still
/// picture has light in every period and through every pause, at an opacity of 1. A time that is not finite
/// counts as 0.
std::optional<LightParam> lightLeakAt(double time, double strength, bool isStill);

/// The leak's picture, mirrored, turned and faded as `leak` says, screened over the picture.
MTIImage screenedLightLeak(const MTIImage& picture, const MTIImage& leakImage, const LightParam& leak,
                           MTIPixelFormat outputPixelFormat);

}  // namespace qv
