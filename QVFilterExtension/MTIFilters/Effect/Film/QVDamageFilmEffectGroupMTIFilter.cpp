#include "QVFilterExtension/MTIFilters/Effect/Film/QVDamageFilmEffectGroupMTIFilter.h"

#include "QVFilterExtension/Private/QVAssetCache.h"

namespace qv {

extern const QVFilterClass QVDamageFilmMTIFilterClass;

const QVFilterClass QVDamageFilmEffectGroupMTIFilterClass{
    .name = "QVDamageFilmEffectGroupMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Found footage",
    .help = "A print found after decades: faded dyes, scratches, burns, dirt and a ragged gate",
    .tags = {"old film", "damaged", "burn", "scratches", "faded", "8mm", "grindhouse", "archive"},
    .factory = makeFilter<QVDamageFilmEffectGroupMTIFilter>,
    .category = QVFilterCategory::film,
};

namespace {

QVAssetCache& classAssets() {
    static auto& cache = *new QVAssetCache;
    return cache;
}

}  // namespace

QVDamageFilmEffectGroupMTIFilter::QVDamageFilmEffectGroupMTIFilter(const QVFilterClass& filterClass)
    : FilmEffectGroup(filterClass, classAssets(), "damage_film_lookup.png"),
      dirts_(numberedNames("black_film_dirt_", 9, 2, ".png")),
      hairs_(numberedNames("black_film_hair_", 6, 4, ".png")),
      scratches_(numberedNames("film_scratch_", 6, 1, ".png")),
      burns_(numberedNames("damage_film_burn_", 6, 1, ".png")),
      wearFilter_(QVDamageFilmMTIFilterClass) {}

std::vector<SpiritParam> QVDamageFilmEffectGroupMTIFilter::params() const {
    const double e = effectValue();
    const FilmSpriteKind kinds[] = {
        {burns_, int(1 + 1.5 * e), 0.03 + 0.06 * e, 120, 90},
        {dirts_, int(2 + 4 * e), 0.6, 16, 7, 1, 0.85},
        {hairs_, int(2 * e), 0.45, 30, 80},
        scratchesAlongFilm(scratches_, int(1 + 4 * e), 0.5, 0.6),
    };
    return sprites(kinds, layoutTime(), isPhoto());
}

MTIImage QVDamageFilmEffectGroupMTIFilter::outputImage() {
    if (!inputImage()) return {};
    wearFilter_.setInputImage(inputImage());
    wearFilter_.setITime(layoutTime());
    wearFilter_.setEffectValue(effectValue());
    wearFilter_.setIsPhoto(isPhoto());
    lookupFilter_.setIntensity(0.35f + 0.65f * effectValue());
    frameBlendFilter_.setOutputPixelFormat(outputPixelFormat());
    return framed(dirtied(graded(wearFilter_.outputImage())), fittedFrame("damage_film_frame.png"));
}

}  // namespace qv
