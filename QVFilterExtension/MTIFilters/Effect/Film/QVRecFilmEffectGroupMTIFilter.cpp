#include "QVFilterExtension/MTIFilters/Effect/Film/QVRecFilmEffectGroupMTIFilter.h"

#include <cmath>

#include "QVFilterExtension/Private/OnScreenDisplay.h"
#include "QVFilterExtension/Private/QVAssetCache.h"
#include "QVFilterExtension/QVMTIFilterUtil.h"

namespace qv {

namespace {
using Rec = QVRecFilmEffectGroupMTIFilter;
}  // namespace

const QVFilterClass QVRecFilmEffectGroupMTIFilterClass{
    .name = "QVRecFilmEffectGroupMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Handycam",
    .help = "A camcorder's picture under its display: brackets, battery, gain and a running counter",
    .tags = {"camcorder", "rec", "recording", "viewfinder", "home video", "dv", "y2k", "2000s", "overlay"},
    .factory = makeFilter<QVRecFilmEffectGroupMTIFilter>,
    .category = QVFilterCategory::film,
    .properties = {qvProperty<&Rec::counterStart, &Rec::setCounterStart>({
        .name = "counterStart",
        .help = "what the counter shows at the clip's start",
        .maximum = 359999,
        .unit = QVUnit::seconds,
        .driver = QVPropertyDriver::host,
    })},
};

namespace {

constexpr char kFont[] = "Aldrich-Regular.ttf";
constexpr double kBlink = 1.2, kBlinkOn = 0.6;  // seconds
// Of the display, in 1080ths of the frame's shorter side.
constexpr double kInset = 56, kBracket = 92, kMargin = 98, kText = 54, kSmallText = 40, kBattery = 112,
                 kBadge = 142, kDot = 40;

QVAssetCache& classAssets() {
    static auto& cache = *new QVAssetCache;
    return cache;
}

}  // namespace

QVRecFilmEffectGroupMTIFilter::QVRecFilmEffectGroupMTIFilter(const QVFilterClass& filterClass)
    : FilmEffectGroup(filterClass, classAssets(), "rec_film_lookup.png") {}

std::string QVRecFilmEffectGroupMTIFilter::counter() const {
    return counterText(counterStart_ + iTime());
}

std::string QVRecFilmEffectGroupMTIFilter::timeCode() const {
    return QVMTIFilterUtil::timeFormatterWithMSEC4(iTime());
}

std::vector<SpiritParam> QVRecFilmEffectGroupMTIFilter::params() const {
    if (!inputImage()) return {};
    OnScreenDisplay display(inputImage().size());
    const double right = display.width(), bottom = display.height();
    const double bracket = kInset + kBracket / 2;
    const CGPoint corners[] = {{bracket, bracket},
                               {bracket, bottom - bracket},
                               {right - bracket, bottom - bracket},
                               {right - bracket, bracket}};
    for (int i = 0; i < 4; ++i)
        display.addPicture(textureNamed("rec_film_corner.png"), corners[i], kBracket, i);

    const double topLine = kMargin + kText / 2, bottomLine = bottom - topLine;
    display.addPicture(textureNamed("rec_film_battery.png"), {kMargin + kBattery / 2, topLine}, kBattery);

    const double counterLeft = right - kMargin - display.widthOfText(counter(), kFont, kText);
    display.addText(counter(), {counterLeft, topLine - 0.6 * kText}, kFont, kText);
    const bool isDotOn =
        isPhoto() || !std::isfinite(iTime()) || iTime() - kBlink * std::floor(iTime() / kBlink) < kBlinkOn;
    if (isDotOn)
        display.addPicture(textureNamed("rec_film_dot.png"), {counterLeft - kDot, topLine}, 1.8 * kDot);

    display.addPicture(textureNamed("rec_film_auto.png"), {kMargin + kBadge / 2, bottomLine}, kBadge);
    display.addText("3dB", {kMargin + kBadge + 26, bottomLine - 0.6 * kSmallText}, kFont, kSmallText);
    display.addText(
        timeCode(),
        {right - kMargin - display.widthOfText(timeCode(), kFont, kSmallText), bottomLine - 0.6 * kSmallText},
        kFont, kSmallText);
    return display.sprites();
}

MTIImage QVRecFilmEffectGroupMTIFilter::outputImage() {
    spiritFilter_.setOutputPixelFormat(outputPixelFormat());
    return dirtied(graded(QVEffectMTIFilter::outputImage()));
}

}  // namespace qv
