#include "QVFilterExtension/MTIFilters/Effect/Film/QVFujiFilmEffectGroupMTIFilter.h"

#include <algorithm>
#include <cmath>

#include "QVFilterExtension/Private/QVAssetCache.h"

namespace qv {

const QVFilterClass QVFujiFilmEffectGroupMTIFilterClass{
    .name = "QVFujiFilmEffectGroupMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Colour negative",
    .help = "A fine-grained colour negative: soft contrast, cool shadows, creamy lights, red halos",
    .tags = {"film look", "35mm", "analog", "halation", "pastel", "portrait", "grain", "grade"},
    .factory = makeFilter<QVFujiFilmEffectGroupMTIFilter>,
    .category = QVFilterCategory::film,
};

namespace {

constexpr double kHalo = 1.0 / 70;  // of the shorter side

QVAssetCache& classAssets() {
    static auto& cache = *new QVAssetCache;
    return cache;
}

}  // namespace

QVFujiFilmEffectGroupMTIFilter::QVFujiFilmEffectGroupMTIFilter(const QVFilterClass& filterClass)
    : FilmEffectGroup(filterClass, classAssets(), "fuji_film_lookup.png"),
      dirts_(numberedNames("light_film_dirt_a_", 9, 2, ".png")) {}

MTIParameters QVFujiFilmEffectGroupMTIFilter::parameters() const {
    // Three slow waves without a common period.
    const double t = std::isfinite(iTime()) ? iTime() : 0;
    const double breath = (std::sin(2.3 * t) + std::sin(5.1 * t + 1) + std::sin(11.7 * t + 2)) / 3;
    return {{"effectValue", effectValue()},
            {"exposure", isPhoto() ? 1.0f : float(1 + 0.015 * effectValue() * breath)}};
}

std::vector<SpiritParam> QVFujiFilmEffectGroupMTIFilter::params() const {
    const FilmSpriteKind kinds[] = {{dirts_, int(4 * effectValue()), 0.2, 5, 4, 1, 0.5}};
    return sprites(kinds, layoutTime(), isPhoto());
}

MTIImage QVFujiFilmEffectGroupMTIFilter::outputImage() {
    if (!inputImage()) return {};
    const CGSize size = inputImage().size();
    haloFilter_.setInputImage(inputImage());
    haloFilter_.setRadius(float(std::min(size.width, size.height) * kHalo));
    lookupFilter_.setIntensity(0.5f + 0.5f * effectValue());
    spiritFilter_.setOutputPixelFormat(outputPixelFormat());
    const MTIImage lit = applyKernel({inputImage(), haloFilter_.outputImage()}, parameters());
    return dirtied(graded(grained(lit, 0.06 + 0.2 * effectValue())));
}

}  // namespace qv
