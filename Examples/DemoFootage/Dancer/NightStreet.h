#pragma once

#include <vector>

#include "Examples/DemoFootage/Dancer/Figure.h"
#include "QVFilterExtension/Resources/Assets/Support/Raster.h"

namespace qv::assets {

/// A city street at night behind the dancer, out of focus, with wet ground that mirrors it.
class NightStreet {
  public:
    /// `travel`: how far the camera goes to either side, metres.
    NightStreet(const StageView& view, float travel);

    /// The street at `seconds` with the figure on it, in linear light. `pulse` 0..1: how bright the signs
    /// are; `standing`: where the figure stands, metres to the right.
    Raster<Vec3> draw(const StageView& view, double seconds, float pulse, const Raster<Painted>& figure,
                      float standing) const;

  private:
    void addTraffic(const StageView& view, double seconds, Raster<Vec3>& picture) const;
    void drawGround(const StageView& view, const Raster<Painted>& figure, float standing, float pulse,
                    Raster<Vec3>& picture) const;

    StageView view_;
    int margin_, curb_;  ///< pixels: extra columns on either side; the row where the ground begins
    Raster<Vec3> city_, signs_;
    /// Of the ground, per pixel: how wet (x), the tone of the asphalt (y) and a ripple's sideways slope (z).
    Raster<Vec3> ground_;
};

}  // namespace qv::assets
