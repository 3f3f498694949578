#include "QVFilterExtension/MTIFilters/Effect/Film/QVNoisyFilmEffectGroupMTIFilter.h"

#include "QVFilterExtension/Private/QVAssetCache.h"

namespace qv {

const QVFilterClass QVNoisyFilmEffectGroupMTIFilterClass{
    .name = "QVNoisyFilmEffectGroupMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Pushed film",
    .help = "Night film pushed two stops: coarse grain, mottled teal shadows, amber lights, weave",
    .tags = {"grain", "noise", "16mm", "gritty", "high iso", "night", "indie", "teal"},
    .factory = makeFilter<QVNoisyFilmEffectGroupMTIFilter>,
    .category = QVFilterCategory::film,
};

namespace {

QVAssetCache& classAssets() {
    static auto& cache = *new QVAssetCache;
    return cache;
}

}  // namespace

QVNoisyFilmEffectGroupMTIFilter::QVNoisyFilmEffectGroupMTIFilter(const QVFilterClass& filterClass)
    : FilmEffectGroup(filterClass, classAssets(), "noisy_film_lookup.png"),
      dirts_(numberedNames("light_film_dirt_b_", 10, 2, ".png")),
      hairs_(numberedNames("black_film_hair_", 6, 4, ".png")),
      scratches_(numberedNames("film_scratch_", 6, 1, ".png")) {}

std::vector<SpiritParam> QVNoisyFilmEffectGroupMTIFilter::params() const {
    const double e = effectValue();
    const FilmSpriteKind kinds[] = {
        {dirts_, int(6 * e), 0.5, 6, 5, 1, 0.7},
        {hairs_, int(2 * e), 0.25, 20, 60, 1, 0.6},
        scratchesAlongFilm(scratches_, int(1 + 3 * e), 0.35, 0.45),
    };
    return sprites(kinds, layoutTime(), isPhoto());
}

MTIImage QVNoisyFilmEffectGroupMTIFilter::outputImage() {
    if (!inputImage()) return {};
    spiritFilter_.setOutputPixelFormat(outputPixelFormat());
    lookupFilter_.setIntensity(0.4f + 0.6f * effectValue());
    return dirtied(graded(grained(QVEffectMTIFilter::outputImage(), 0.16 + 0.3 * effectValue())));
}

}  // namespace qv
