#pragma once

#include <string>
#include <vector>

#include "Platform/ImageGraph/MTIParameters.h"

namespace qv {

/// Whether a blur of standard deviation `radius` (pixels) changes any 8-bit value; false when it is not
/// finite.
bool blursVisibly(float radius);

/// A wide Gaussian is run on a reduced picture: reduced by these factors in turn, each with the weights
/// 1 3 5 … 5 3 1 of twice as many pixels a side, blurred, and enlarged bilinearly.
struct ReducedGaussian {
    std::vector<int> factors;  ///< 2, 4, 8 or 16 each; none for a narrow one
    double deviation;          ///< of the Gaussian in between, pixels of the reduced picture
};
ReducedGaussian reducedGaussian(float radius);

/// A side of a picture reduced by `factor`, pixels: with all that reaches beyond its borders.
int reducedSide(int side, int factor);
/// Where a place of the picture, in pixels of the reduced one, begins there: `border` before the reduction.
double reducedBorder(double border, int factor);

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
