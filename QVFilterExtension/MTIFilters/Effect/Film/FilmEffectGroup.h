#pragma once

#include <span>
#include <string>
#include <vector>

#include "Platform/ImageGraph/MTIFilters.h"
#include "QVFilterCore/QVEffectMTIFilter.h"
#include "QVFilterCore/QVFilmNoisyMTIFilter.h"
#include "QVFilterCore/QVLookupMTIFilter.h"
#include "QVFilterCore/QVSpiritFilter.h"
#include "QVFilterExtension/MTIFilters/Effect/Film/FilmSprites.h"

namespace qv {

class QVAssetCache;

/// What the film looks are made of: grain, a look-up table, dirt, and a border around the picture. Each step
/// takes a picture and gives the next one; a step whose asset is missing gives back its picture.
class FilmEffectGroup : public QVEffectMTIFilter {
  public:
    /// The dirt, and what else is drawn over the picture, as the time, the strength and the input stand.
    virtual std::vector<SpiritParam> params() const = 0;
    /// A picture of the bundle as a sprite's texture, loaded once per process; nil when it is not there.
    SpiritParam::Texture textureNamed(const std::string& name) const;

    /// Draws `params`.
    QVSpiritFilter& spiritFilter() { return spiritFilter_; }
    /// Grades by the look's table.
    QVLookupMTIFilter& lookupFilter() { return lookupFilter_; }
    /// Makes the grain.
    QVFilmNoisyMTIFilter& noisyFilter() { return noisyFilter_; }

  protected:
    /// `assets` are the class's own; `lookupName` is the look's table in the bundle.
    FilmEffectGroup(const QVFilterClass& filterClass, QVAssetCache& assets, const std::string& lookupName);

    /// A still picture's moment depends on its strength, so that its layout can be chosen.
    double photoTime() const { return iTime() + double(effectValue()) * 100; }
    /// The moment to draw: the time, on a photo `photoTime`.
    double layoutTime() const { return isPhoto() ? photoTime() : iTime(); }

    /// Grain overlaid on the input.
    MTIImage grained(const MTIImage& picture, double opacity);
    /// By the look's table.
    MTIImage graded(const MTIImage& picture);
    /// With the sprites over it.
    MTIImage dirtied(const MTIImage& picture);
    /// With a border over it.
    MTIImage framed(const MTIImage& picture, const MTIImage& frame);

    /// The border of this asset for the input's size: fitted into the frame, its outer thirds kept and what
    /// lies between them repeated. Made once per size, two of which are kept; none of a photo's.
    MTIImage fittedFrame(const std::string& name) const;
    /// Height by width of the input; 0 without one.
    double heightPerWidth() const;
    /// `filmSprites` of these kinds with the class's textures, on the input's shape.
    std::vector<SpiritParam> sprites(std::span<const FilmSpriteKind> kinds, double time, bool isStill) const;

    /// Scratches that run along the film, about as long as the frame is high.
    FilmSpriteKind scratchesAlongFilm(std::span<const std::string> names, int count, double visibleShare,
                                      double alpha) const;

    /// What the class has loaded.
    QVAssetCache& assets() const { return assets_; }

    /// The steps' filters, as they were left by the last `outputImage`.
    QVSpiritFilter spiritFilter_;
    QVFilmNoisyMTIFilter noisyFilter_;
    MTIBlendFilter noisyBlendFilter_{MTIBlendMode::overlay};
    MTIBlendFilter frameBlendFilter_{MTIBlendMode::normal};
    QVLookupMTIFilter lookupFilter_;

  private:
    QVAssetCache& assets_;
};

}  // namespace qv
