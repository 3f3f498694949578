#include "QVFilterExtension/MTIFilters/Effect/Film/QVBlackFilmEffectGroupMTIFilter.h"

#include <algorithm>
#include <cmath>

#include "Platform/ImageGraph/ImageNode.h"
#include "QVFilterExtension/Private/QVAssetCache.h"

namespace qv {

extern const QVFilterClass QVBlackFilmEffectMTIFilterClass, QVBlackFilmShakeMTIFilterClass;

const QVFilterClass QVBlackFilmEffectGroupMTIFilterClass{
    .name = "QVBlackFilmEffectGroupMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Silent film",
    .help = "A black and white print in an old projector: grain, dust, hairs and a gate that jitters",
    .tags = {"old film", "black and white", "noir", "monochrome", "projector", "dust", "hair", "vintage"},
    .factory = makeFilter<QVBlackFilmEffectGroupMTIFilter>,
    .category = QVFilterCategory::film,
};

namespace {

QVAssetCache& classAssets() {
    static auto& cache = *new QVAssetCache;
    return cache;
}

QVAdjustToolValue silverTones() {
    QVAdjustToolValue value;
    value.adjustValue().setSharpen(0.5);
    PGCurvesToolValue curves = PGCurvesToolValue::defaultValue();
    PGCurve& luminance = curves.luminanceCurve();
    luminance.setBlacksLevel(0);
    luminance.setShadowsLevel(15);
    luminance.setMidtonesLevel(42);
    luminance.setHighlightsLevel(61);
    luminance.setWhitesLevel(100);
    value.setCurvesToolValue(curves);
    return value;
}

/// `shaken`, the border in the gate, known to cover no more than the border can where it is moved to.
MTIImage coveredAsShaken(const MTIImage& shaken, const MTIImage& border) {
    if (!border) return shaken;
    // At full strength 15 thousandths of the shorter side, on top of being enlarged by as much.
    const double reach = 2 * 0.015 * std::min(border.size().width, border.size().height);
    return imageCoveredWithin(shaken, widened(border.node()->covered, int(std::ceil(reach)) + 1));
}

}  // namespace

QVBlackFilmEffectGroupMTIFilter::QVBlackFilmEffectGroupMTIFilter(const QVFilterClass& filterClass)
    : FilmEffectGroup(filterClass, classAssets(), "black_film_dark.png"),
      dirts_(numberedNames("black_film_dirt_", 9, 2, ".png")),
      hairs_(numberedNames("black_film_hair_", 6, 4, ".png")),
      adjustFilter_(silverTones()),
      filmFilter_(QVBlackFilmEffectMTIFilterClass),
      shakeFilter_(QVBlackFilmShakeMTIFilterClass) {}

MTIImage QVBlackFilmEffectGroupMTIFilter::frameImage() const {
    return fittedFrame("blackFilm_frame.png");
}

std::vector<SpiritParam> QVBlackFilmEffectGroupMTIFilter::params() const {
    const double e = effectValue();
    const int most = isPhoto() ? 2 : 4;
    const double scale = e < 0.5 ? 2 * e : 1;
    const FilmSpriteKind kinds[] = {
        {dirts_, int(2 * e * most), 0.75, 20, 10, scale, 0.8},
        {hairs_, e < 0.5 ? 0 : 1, 0.4, 20, 89, scale},
    };
    return sprites(kinds, iTime(), isPhoto());
}

MTIImage QVBlackFilmEffectGroupMTIFilter::outputImage() {
    if (!inputImage()) return {};
    if (isPhoto()) setITime(photoTime());

    filmFilter_.setInputImage(graded(grained(inputImage(), effectValue() * 0.35 + 0.05)));
    filmFilter_.setITime(iTime());
    filmFilter_.setEffectValue(effectValue());
    filmFilter_.setIsPhoto(isPhoto());
    const MTIImage picture = dirtied(filmFilter_.outputImage());

    shakeFilter_.setInputImage(frameImage());
    shakeFilter_.setITime(iTime());
    frameBlendFilter_.setOutputPixelFormat(outputPixelFormat());
    return framed(picture, coveredAsShaken(shakeFilter_.outputImage(), shakeFilter_.inputImage()));
}

}  // namespace qv
