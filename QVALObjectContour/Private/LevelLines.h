#pragma once

#include <cstdint>

#include "QVALObjectContour/QVObjectContour.h"

namespace qv {

/// Samples of a height field with a ring of zeros around it.
struct HeightField {
    const std::uint16_t* samples;  ///< the first row of the ring
    std::size_t stride;            ///< samples from a row's start to the next one's
    int width, height;             ///< with the ring

    std::uint16_t at(int x, int y) const { return samples[std::size_t(y) * stride + std::size_t(x)]; }
};

/// The closed lines at a level above 0, linear between the samples: marching squares. Sample (1, 1), the
/// first one within the ring, lies at (0.5, 0.5). What is higher lies to the right of the way, as seen with y
/// down; where two high corners of a square meet two low ones, the low ones are connected. In the order of
/// their first points in reading order.
QVOutlineSet levelLines(const HeightField& field, float level);

}  // namespace qv
