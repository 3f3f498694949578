#pragma once

#include <string>
#include <vector>

#include "Platform/ImageGraph/MTIParameters.h"

namespace qv {

/// One full-screen pass of a blur. It reads the result of the pass before it, the first one the image.
struct BlurPass {
    std::string function;  ///< of the platform's shader library
    int width, height;     ///< pixels of its result
    MTIParameters parameters;
};

/// The passes of a Gaussian blur of standard deviation `radius` (pixels) over an image of the given size,
/// with edges that continue the border pixels. None when the radius is not finite or so small that no 8-bit
/// value changes. A processor fetches pixels, a GPU samples pairs of them; the results agree within rounding.
std::vector<BlurPass> planGaussianBlur(float radius, int width, int height, bool processor);

}  // namespace qv
