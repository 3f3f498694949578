#include "QVFilterExtension/MTIFilters/Effect/Film/QVVhsFilmEffectGroupMTIFilter.h"

#include <cmath>

#include "QVFilterExtension/Private/OnScreenDisplay.h"
#include "QVFilterExtension/Private/QVAssetCache.h"
#include "QVFilterExtension/QVMTIFilterUtil.h"

namespace qv {

namespace {
using Vhs = QVVhsFilmEffectGroupMTIFilter;
}  // namespace

const QVFilterClass QVVhsFilmEffectGroupMTIFilterClass{
    .name = "QVVhsFilmEffectGroupMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Home video tape",
    .help = "A worn cassette: bleeding colour, tracking noise and tears under the recorder's display",
    .tags = {"vhs", "tape", "vcr", "camcorder", "play", "90s", "80s", "tracking", "glitch", "analog"},
    .factory = makeFilter<QVVhsFilmEffectGroupMTIFilter>,
    .category = QVFilterCategory::film,
    .properties = {qvProperty<&Vhs::date, &Vhs::setDate>({
        .name = "date",
        .help = "when the recording starts, in seconds since 1970 on the clock that is shown",
        .minimum = 0,
        .maximum = 4102444799,
        .unit = QVUnit::seconds,
        .driver = QVPropertyDriver::host,
    })},
};

namespace {

constexpr char kFont[] = "VCROSDMono.ttf";
// Of the display, in 1080ths of the frame's shorter side.
constexpr double kMargin = 84, kText = 60, kLine = 70, kTriangle = 44, kBox = 168;

constexpr int kCalmPictures = 2, kTroubledPictures = 6;
constexpr double kNoiseRate = 15, kPeriod = 1.5;  // a second; seconds
/// The part of a picture that is on the frame: two fifths of its width, half its height.
constexpr double kCropWidth = 0.4, kCropHeight = 0.5;

QVAssetCache& classAssets() {
    static auto& cache = *new QVAssetCache;
    return cache;
}

}  // namespace

QVVhsFilmEffectGroupMTIFilter::QVVhsFilmEffectGroupMTIFilter(const QVFilterClass& filterClass)
    : FilmEffectGroup(filterClass, classAssets(), "vhs_film_lookup.png") {}

std::string QVVhsFilmEffectGroupMTIFilter::dateText() const {
    return recorderDate(date_ + iTime());
}

std::string QVVhsFilmEffectGroupMTIFilter::timeText() const {
    return recorderTime(date_ + iTime());
}

std::string QVVhsFilmEffectGroupMTIFilter::counter() const {
    return QVMTIFilterUtil::timeFormatterWithMSEC4(iTime());
}

MTIImage QVVhsFilmEffectGroupMTIFilter::tapeImage() const {
    const double time = std::isfinite(iTime()) ? layoutTime() : 0;
    const double slot = std::floor(time * kNoiseRate), period = std::floor(time / kPeriod);
    const double along = time / kPeriod - period;
    const bool isTroubled = filmDraw(period + 4711.3) <= 0.1 + 0.57 * effectValue();

    int index = int(filmDraw(slot + 17.2) * kCalmPictures);
    double top = filmDraw(slot + 91.7);
    if (isTroubled) {
        index = kCalmPictures + int(filmDraw(period + 3301.9) * kTroubledPictures);
        // Rolls by up to a third of the picture; which way, and from where, is the period's.
        const double roll = (filmDraw(period + 977.1) - 0.5) * 0.66;
        top = 0.5 + roll * (2 * along - 1);
    }
    index = std::min(index, kCalmPictures + kTroubledPictures - 1);

    // Whole pixels, so that nothing is smoothed away and rows stay rows.
    MTICropFilter crop;
    crop.setInputImage(assets().mtiImageNamed("vhs_film_glitch_" + std::to_string(index) + ".png"));
    const CGSize size = crop.inputImage().size();
    crop.setCropRegion(MTICropRegionMake(std::floor(filmDraw(slot + 53.4) * (1 - kCropWidth) * size.width),
                                         std::floor(top * (1 - kCropHeight) * size.height),
                                         kCropWidth * size.width, kCropHeight * size.height));
    return crop.outputImage();
}

std::vector<SpiritParam> QVVhsFilmEffectGroupMTIFilter::params() const {
    if (!inputImage()) return {};
    OnScreenDisplay display(inputImage().size());
    const double right = display.width(), bottom = display.height();
    const auto widthOf = [&](const std::string& text) { return display.widthOfText(text, kFont, kText); };

    display.addText("PLAY", {kMargin, kMargin}, kFont, kText);
    display.addPicture(textureNamed("vhs_film_triangle.png"),
                       {kMargin + widthOf("PLAY ") + kTriangle / 2, kMargin + kText / 2}, kTriangle);
    const CGPoint box{right - kMargin - kBox / 2, kMargin + kText / 2};
    display.addPicture(textureNamed("vhs_film_rect.png"), box, kBox);
    display.addText("TBC", {box.x - widthOf("TBC") / 2, kMargin}, kFont, kText);

    const double lowest = bottom - kMargin - kText;
    display.addText(timeText(), {kMargin, lowest - kLine}, kFont, kText);
    display.addText(dateText(), {kMargin, lowest}, kFont, kText);
    display.addText(counter(), {right - kMargin - widthOf(counter()), lowest}, kFont, kText);
    return display.sprites();
}

MTIImage QVVhsFilmEffectGroupMTIFilter::outputImage() {
    if (!inputImage()) return {};
    vhsFilter_.setInputImage(inputImage());
    vhsFilter_.setInputImage2(tapeImage());
    vhsFilter_.setEffectValue(0.3f + 0.7f * effectValue());
    spiritFilter_.setOutputPixelFormat(outputPixelFormat());
    return dirtied(graded(vhsFilter_.outputImage()));
}

}  // namespace qv
