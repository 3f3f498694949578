#include "QVFilterExtension/MTIFilters/Effect/Film/QVBlackFilmEffectGroupMTIFilter.h"

#include <algorithm>

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

/// Where a border may show that the gate moves, at a strength of QVBlackFilmShakeMTIFilter, whose shader has
/// the same reach.
std::vector<PixelRect> partsOfShaken(const MTIImage& border, double strength) {
    const CGSize size = border.size();
    // How far it is moved at most; it is enlarged by as much on every side.
    const double reach = (0.002 + 0.013 * strength) * std::min(size.width, size.height);
    const auto moved = [&](int place, double side, double by) {
        return side / 2 + (place - side / 2 + by) / (1 - 2 * reach / side);
    };
    std::vector<PixelRect> parts;
    for (const PixelRect& part : border.node()->covered) {
        const int left = int(moved(part.x, size.width, -reach)) - 2;
        const int top = int(moved(part.y, size.height, -reach)) - 2;
        const int right = int(moved(part.x + part.width, size.width, reach)) + 2;
        const int bottom = int(moved(part.y + part.height, size.height, reach)) + 2;
        parts.push_back({left, top, right - left, bottom - top});
    }
    return apart(parts);
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

MTIImage QVBlackFilmEffectGroupMTIFilter::shakenBorder() {
    const MTIImage border = frameImage();
    shakeFilter_.setInputImage(border);
    shakeFilter_.setITime(iTime());
    if (!border) return shakeFilter_.outputImage();
    if (border.node() != shownBorder_.node() || shakeFilter_.effectValue() != shownShake_) {
        shownBorder_ = border;
        shownShake_ = shakeFilter_.effectValue();
        shownParts_ = partsOfShaken(border, double(shownShake_));
    }
    return imageCoveredWithin(shakeFilter_.outputImage(), shownParts_);
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

    frameBlendFilter_.setOutputPixelFormat(outputPixelFormat());
    return framed(picture, shakenBorder());
}

}  // namespace qv
