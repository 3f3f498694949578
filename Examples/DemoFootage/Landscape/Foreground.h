#pragma once

#include "Examples/DemoFootage/Landscape/World.h"

namespace qv::assets {

/// Height of the near bank; below 0 where the lake is.
float bankHeight(float x, float z);
/// The near bank without its grass.
Layer drawBank(const View& view, int margin);

/// A jetty and a red rowing boat, and the same upside down for the water to show.
Layer drawJettyAndBoat(const View& view, int margin, bool mirrored);

/// A big spruce at the left edge of a wide picture.
Layer drawSpruceTree(const View& view, int margin);
inline constexpr float kSpruceDistance = 11;

/// Draws the grass and flowers of the near bank as they stand in the wind at `seconds`.
void drawMeadow(const View& view, double seconds, float sun, Raster<Vec3>& picture);

}  // namespace qv::assets
