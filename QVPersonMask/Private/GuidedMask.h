#pragma once

#include <opencv2/core.hpp>

#include "Platform/Media/PixelBuffer.h"

namespace qv {

/// Scales a mask up so that its edges run along those of the picture, and sharpens them. `guide` is the
/// picture in RGB and `mask` (floats, 0..1) of the same size; `luma` the whole picture's, whose size the
/// result (gray8) has.
PixelBuffer guidedMask(const cv::Mat& mask, const cv::Mat& guide, const cv::Mat& luma);

}  // namespace qv
