#pragma once

#include "QVFilterExtension/Resources/Assets/Landscape/World.h"

namespace qv::assets {

/// Fills `picture` below the row `waterline` with the lake, which mirrors what is drawn above it and
/// `nearby`: what stands in the near water, drawn upside down, `shift(row)` columns to the right.
struct NearbyMirror {
    const Layer& layer;
    float margin;
    float sun;
};
void drawWater(const View& view, float waterline, double seconds, const NearbyMirror& nearby,
               Raster<Vec3>& picture);

}  // namespace qv::assets
