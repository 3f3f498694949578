#pragma once

#include <cstdint>
#include <vector>

#include "Examples/DemoFootage/Landscape/World.h"

namespace qv::assets {

/// The lake seen by one camera. What never changes is drawn once; a frame then costs the sky, the water and
/// the grass.
class Landscape {
  public:
    /// `travel`: how far the camera goes to either side, metres; `seconds`: up to when.
    Landscape(const View& view, float travel = 0, float seconds = 0);

    struct Moment {
        double seconds = 0;
        float cameraX = 0;  ///< metres, within ±travel
        float exposure = 0.8f;
        float sun = 1;          ///< dims all of the sun's light
        float cloudShadow = 0;  ///< how dark the passing clouds' shadows are, 0..1
        float grain = 1.6f;     ///< codes
    };
    /// RGBA8 rows of the frame, opaque.
    std::vector<std::uint8_t> render(const Moment& moment) const;

  private:
    View view_;
    int farMargin_, nearMargin_;
    Sky sky_;
    Layer mountains_, farShore_, bank_, jetty_, jettyMirrored_, spruce_;
    std::vector<bool> mirroredRows_;
};

}  // namespace qv::assets
