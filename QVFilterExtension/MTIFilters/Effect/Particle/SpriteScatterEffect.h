#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "QVFilterCore/QVEffectMTIFilter.h"
#include "QVFilterCore/QVSpiritFilter.h"

namespace qv {

/// What the effects share that scatter copies of one picture over the frame. The list of sprites is a
/// function of their indices, the time and the strength alone, so a moment looks the same in whatever order
/// it is asked for. All sprites together are one pass; without the picture in the bundle the input comes out
/// unchanged.
class SpriteScatterEffect : public QVEffectMTIFilter {
  public:
    /// The sprites of the last frame asked for, the lowest first.
    const std::vector<SpiritParam>& spiritParams() const { return spiritFilter_.params(); }

    MTIImage outputImage() override;

  protected:
    /// `assetName` is a picture of the bundle, loaded once per process.
    SpriteScatterEffect(const QVFilterClass& filterClass, const std::string& assetName);

    /// The sprites for the time and strength as they stand on a frame `aspect` times as high as wide.
    virtual std::vector<SpiritParam> sprites(float aspect) const = 0;

    /// The picture; nil when the bundle lacks it.
    const SpiritParam::Texture& spiritTexture() const { return spiritTexture_; }

    /// 0 up to 1, also of negative numbers.
    static double fract(double x);
    /// A number of sprites, truncated. Strengths outside 0..1, and what is not a number, stay affordable.
    static std::int64_t spriteCount(double count);

  private:
    SpiritParam::Texture spiritTexture_;
    QVSpiritFilter spiritFilter_;
};

}  // namespace qv
