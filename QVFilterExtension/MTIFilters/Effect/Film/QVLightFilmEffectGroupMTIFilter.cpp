#include "QVFilterExtension/MTIFilters/Effect/Film/QVLightFilmEffectGroupMTIFilter.h"

#include "QVFilterExtension/Private/LightLeaks.h"
#include "QVFilterExtension/Private/QVAssetCache.h"

namespace qv {

const QVFilterClass QVLightFilmEffectGroupMTIFilterClass{
    .name = "QVLightFilmEffectGroupMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Light-leak film",
    .help = "Warm home-movie film: grain, dust, and light leaks that sweep over the picture",
    .tags = {"light leak", "film burn", "8mm", "super 8", "warm", "summer", "dust", "vintage", "analog"},
    .factory = makeFilter<QVLightFilmEffectGroupMTIFilter>,
    .category = QVFilterCategory::film,
};

namespace {

QVAssetCache& classAssets() {
    static auto& cache = *new QVAssetCache;
    return cache;
}

}  // namespace

QVLightFilmEffectGroupMTIFilter::QVLightFilmEffectGroupMTIFilter(const QVFilterClass& filterClass)
    : FilmEffectGroup(filterClass, classAssets(), "light_film_light.png"),
      dirtAs_(dirtsWithPrefix("light_film_dirt_a_", 9)),
      dirtBs_(dirtsWithPrefix("light_film_dirt_b_", 10)),
      lightImages_(lightLeakNames()) {}

std::vector<std::string> QVLightFilmEffectGroupMTIFilter::dirtsWithPrefix(const std::string& prefix,
                                                                          int count) {
    return numberedNames(prefix, count, 2, ".png");
}

MTIImage QVLightFilmEffectGroupMTIFilter::mtiImageNamed(const std::string& name) const {
    return assets().mtiImageNamed(name);
}

MTIImage QVLightFilmEffectGroupMTIFilter::frameImage() const {
    return fittedFrame("light_film_frame.png");
}

std::vector<SpiritParam> QVLightFilmEffectGroupMTIFilter::params() const {
    const double e = effectValue();
    const FilmSpriteKind kinds[] = {
        {dirtBs_, int(e < 0.5 ? 6 * e + 1 : 4 + 8 * (e - 0.5)), 0.5, 5, 10, 1, 0.8},
        // Seen in 40 % of the slots by a first rule and in 50 % by a second: the wider one decides.
        {dirtAs_, e < 0.5 ? 0 : 1, 0.5, 3, 3},
    };
    return sprites(kinds, iTime(), false);
}

MTIImage QVLightFilmEffectGroupMTIFilter::applyingLightImageWithInput(const MTIImage& picture) const {
    const std::optional<LightParam> leak = lightLeakAt(iTime(), effectValue(), isPhoto());
    if (!leak) return picture;
    return screenedLightLeak(picture, mtiImageNamed(lightImages_[leak->index]), *leak, outputPixelFormat());
}

MTIImage QVLightFilmEffectGroupMTIFilter::outputImage() {
    if (!inputImage()) return {};
    if (isPhoto()) setITime(photoTime());

    const double e = effectValue();
    const double grain = isPhoto() ? 0.15 : e < 0.5 ? 0.08 + 0.14 * e : 0.15 + 0.1 * (e - 0.5);
    frameBlendFilter_.setOutputPixelFormat(outputPixelFormat());
    return applyingLightImageWithInput(framed(dirtied(graded(grained(inputImage(), grain))), frameImage()));
}

}  // namespace qv
