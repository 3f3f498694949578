#pragma once

#include <array>
#include <cstdint>

#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVRetroFramFlashFilterClass;

/// Coloured light that sweeps in from one edge of the frame, another edge and colour each second: in over the
/// second's first five frames of 30, then it stays. Strength, 0..1, chooses the sequence of edges. A photo is
/// lit from the lower edge, as far in as the strength says.
///
/// The colour belongs to the edge of the frame that was asked for before, so a jump in time shows the right
/// colour from the second frame on; `settle` sets it right at once.
class QVRetroFramFlashFilter : public QVEffectMTIFilter {
  public:
    explicit QVRetroFramFlashFilter(const QVFilterClass& filterClass = QVRetroFramFlashFilterClass);

    /// The edge chosen last: 0 left, 1 top, 2 right, 3 bottom.
    std::int32_t side() const { return flash_.side; }
    void setSide(std::int32_t side) { flash_.side = side; }
    /// The light's colour chosen last: red, green and blue.
    const MTIVector& colorVector() const { return flash_.color; }
    /// How far the light has come in the last frame, 0..1.
    float motionProgress() const { return flash_.motion; }
    /// The colours of the four edges: orange, amber, warm white, pale warm light.
    const std::array<MTIVector, 4>& framColors() const { return framColors_; }

    /// A colour of 0..1 components, narrowed to floats.
    static MTIVector getColorVectorWithRGB(double red, double green, double blue);

    /// The three for the time as it stands; each is kept. The colour is that of the edge chosen last.
    float getMotionProgress() const;
    const MTIVector& getColorVector() const;
    std::int32_t getFlashSide() const;

    /// Sets the edge as if all frames before this one had been asked for in their order.
    void settle();

    /// "motionProgress", "color" and "side", chosen in this order.
    MTIParameters parameters() const override;

  private:
    /// The edge of a frame, or the one kept where seconds can no longer be counted.
    std::int32_t sideAt(std::int64_t frame) const;

    struct Flash {
        std::int32_t side = 0;
        MTIVector color;
        float motion = 0;
    };
    std::array<MTIVector, 4> framColors_;
    mutable Flash flash_;
};

}  // namespace qv
