#pragma once

#include "QVFilterExtension/MTIFilters/Effect/Film/FilmEffectGroup.h"

namespace qv {

extern const QVFilterClass QVLightFilmEffectGroupMTIFilterClass;

/// Film out of a camera that was not tight: warm tones, grain, two kinds of dirt, a soft border, and light
/// leaks that sweep over the picture.
///
/// The strength adds grain, dirt (1 to 8 small specks, from a half on a tiny one) and light: leaks in a
/// twentieth of all periods of 0.6 seconds at 0, in a fifth at a half, in all at 1. On a photo, which always
/// has light, every reading of the picture moves `iTime` on by 100 seconds at full strength; whoever sets the
/// time before it reads gets the same picture again.
class QVLightFilmEffectGroupMTIFilter : public FilmEffectGroup {
  public:
    explicit QVLightFilmEffectGroupMTIFilter(
        const QVFilterClass& filterClass = QVLightFilmEffectGroupMTIFilterClass);

    /// Lays the grain over the input.
    MTIBlendFilter& noisyBlendFilter() { return noisyBlendFilter_; }
    /// Lays the border over the picture.
    MTIBlendFilter& frameBlendFilter() { return frameBlendFilter_; }
    /// File names of the leaks, by the index that the sequences name them by.
    const std::vector<std::string>& lightImages() const { return lightImages_; }

    /// prefix00.png, prefix01.png, …: none for a count of 0 or less.
    static std::vector<std::string> dirtsWithPrefix(const std::string& prefix, int count);
    /// A picture of the bundle, loaded once per process; nil when it is not there.
    MTIImage mtiImageNamed(const std::string& name) const;
    /// The border for the input's size; nil without an input or its asset.
    MTIImage frameImage() const;
    std::vector<SpiritParam> params() const override;
    /// The picture with the moment's leak over it; itself when there is none.
    MTIImage applyingLightImageWithInput(const MTIImage& picture) const;
    MTIImage outputImage() override;

  private:
    std::vector<std::string> dirtAs_, dirtBs_, lightImages_;
};

}  // namespace qv
