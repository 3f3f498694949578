#pragma once

#include <vector>

#include "Examples/DemoFootage/Landscape/World.h"

namespace qv::assets {

/// What stands in the near water, drawn upside down.
struct NearbyMirror {
    const Layer& layer;
    const std::vector<bool>& rows;  ///< which rows of the layer a ripple may show something of
    float margin;                   ///< columns of the layer left of the picture
    float sun;                      ///< dims its sunlight
};

/// Fills `picture` below the row `waterline` with the lake, which mirrors what is drawn above it and
/// `nearby`.
void drawWater(const View& view, float waterline, double seconds, const NearbyMirror& nearby,
               Raster<Vec3>& picture);

}  // namespace qv::assets
