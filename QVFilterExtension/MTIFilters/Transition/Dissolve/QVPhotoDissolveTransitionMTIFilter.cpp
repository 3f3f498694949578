#include "QVFilterExtension/MTIFilters/Transition/Dissolve/QVPhotoDissolveTransitionMTIFilter.h"

#include <algorithm>
#include <array>

#include <fmt/format.h>

#include "Platform/Foundation/Random.h"
#include "Platform/ImageGraph/MTIFilters.h"
#include "QVFilterExtension/Private/QVAssetCache.h"
#include "QVFilterExtension/Private/RandomSeed.h"

namespace qv {

namespace {

using Transition = QVPhotoDissolveTransitionMTIFilter;

struct Style {
    const char* prefix;
    std::int64_t count;
    bool needCrop = false, needRotate = false, fromBrightToDark = false;
};
constexpr std::array<Style, 5> kStyles{{
    {.prefix = "tran_photo_flow_", .count = 4},
    {.prefix = "tran_photo_fade_", .count = 4},
    {.prefix = "tran_photo_facula_", .count = 4, .needCrop = true},
    {.prefix = "tran_photo_stroke_", .count = 4},
    {.prefix = "tran_photo_radial_", .count = 4, .needRotate = true, .fromBrightToDark = true},
}};
constexpr std::string_view kStyleNames[] = {"flow", "fade", "facula", "stroke", "radial"};
static_assert(std::size(kStyleNames) == kStyles.size());

bool isStyle(std::int64_t type) {
    return type >= 0 && type < std::int64_t(kStyles.size());
}

QVAssetCache& assets() {
    static auto& cache = *new QVAssetCache;
    return cache;
}

MTIImage turnedAQuarter(const MTIImage& image) {
    return image.imageByApplyingTransform(CGAffineTransformMakeRotation(1.5707963267948966), true);
}

/// The largest centred part of the picture with the frame's aspect ratio, at the frame's size.
MTIImage croppedTo(const MTIImage& image, CGSize frame) {
    const CGSize size = image.size();
    const double k = std::min(size.width / frame.width, size.height / frame.height);
    const double width = frame.width * k, height = frame.height * k;
    MTICropFilter crop;
    crop.setInputImage(image);
    crop.setCropRegion(
        MTICropRegionMake(size.width / 2 - width / 2, size.height / 2 - height / 2, width, height));
    crop.setScale(float(frame.width / width));
    return crop.outputImage();
}

}  // namespace

const QVFilterClass QVPhotoDissolveTransitionMTIFilterClass{
    .name = "QVPhotoDissolveTransitionMTIFilter",
    .superclass = &QVTransitionMTIFilterClass,
    .title = "Picture dissolve",
    .help =
        "The incoming clip spreads along the grey levels of a picture: ink, soft wipes, spots of light, "
        "brush strokes or irises",
    .tags = {"luma wipe", "ink", "watercolour", "bokeh", "brush", "iris"},
    .factory = makeFilter<QVPhotoDissolveTransitionMTIFilter>,
    .properties =
        {
            qvProperty<&Transition::type, &Transition::setType>({
                .name = "type",
                .title = "Style",
                .help = "style of the pictures",
                .variants = kStyleNames,
            }),
            qvProperty<&Transition::fromBrightToDark, &Transition::setFromBrightToDark>({
                .name = "fromBrightToDark",
                .title = "Bright parts first",
                .help = "begin where the picture is bright; set by the type",
            }),
        },
};

QVPhotoDissolveTransitionMTIFilter::QVPhotoDissolveTransitionMTIFilter(const QVFilterClass& filterClass)
    : QVTransitionMTIFilter(filterClass) {
    setType(0);
}

QVPhotoDissolveTransitionMTIFilter::QVPhotoDissolveTransitionMTIFilter(std::string photoPrefix,
                                                                       std::int64_t count,
                                                                       const QVFilterClass& filterClass)
    : QVTransitionMTIFilter(filterClass), prefix_(std::move(photoPrefix)), count_(count) {}

std::unique_ptr<Transition> QVPhotoDissolveTransitionMTIFilter::filterWithType(std::int64_t type) {
    if (!isStyle(type)) return nullptr;
    auto filter = std::make_unique<Transition>();
    filter->setType(type);
    return filter;
}

void QVPhotoDissolveTransitionMTIFilter::setType(std::int64_t type) {
    type_ = isStyle(type) ? type : 0;
    const Style& style = kStyles[std::size_t(type_)];
    prefix_ = style.prefix;
    count_ = style.count;
    needCrop_ = style.needCrop;
    needRotate_ = style.needRotate;
    fromBrightToDark_ = style.fromBrightToDark;
    photoImage_ = {};
}

void QVPhotoDissolveTransitionMTIFilter::setPrefix(std::string prefix) {
    prefix_ = std::move(prefix);
    photoImage_ = {};
}

void QVPhotoDissolveTransitionMTIFilter::setCount(std::int64_t count) {
    count_ = count;
    photoImage_ = {};
}

void QVPhotoDissolveTransitionMTIFilter::setNeedCrop(bool needCrop) {
    needCrop_ = needCrop;
    photoImage_ = {};
}

void QVPhotoDissolveTransitionMTIFilter::setNeedRotate(bool needRotate) {
    needRotate_ = needRotate;
    photoImage_ = {};
}

std::int64_t QVPhotoDissolveTransitionMTIFilter::photoImageIndexFromTimeRange(
    const CMTimeRange& range) const {
    const double seconds = CMTimeGetSeconds(range.start) + CMTimeGetSeconds(range.duration);
    const std::uint32_t seed = randomSeedFromDouble(seconds * 10) * 29379u + 37168u;
    return count_ == 0 ? 0 : randomFromSeed(seed) % count_;
}

MTIImage QVPhotoDissolveTransitionMTIFilter::photoImage() {
    if (photoImage_ || !inputImage1()) return photoImage_;
    const CGSize frame = inputImage1().size();
    const bool isPortrait = frame.height > frame.width;
    MTIImage image = assets().mtiImageNamed(
        fmt::format("{}{:02}.png", prefix_, photoImageIndexFromTimeRange(timeRange())));
    if (needCrop_ && image) image = croppedTo(isPortrait ? turnedAQuarter(image) : image, frame);
    if (needRotate_ && isPortrait) image = turnedAQuarter(image);
    photoImage_ = image;
    return image;
}

void QVPhotoDissolveTransitionMTIFilter::setTimeRange(CMTimeRange range) {
    if (photoImageIndexFromTimeRange(timeRange()) != photoImageIndexFromTimeRange(range)) photoImage_ = {};
    QVTransitionMTIFilter::setTimeRange(range);
}

void QVPhotoDissolveTransitionMTIFilter::setInputImage1(MTIImage image) {
    if (image.size() != inputImage1().size()) photoImage_ = {};
    QVTransitionMTIFilter::setInputImage1(std::move(image));
}

MTIParameters QVPhotoDissolveTransitionMTIFilter::parameters() const {
    return {{"progress", newProgress()}, {"fromBrightToDark", fromBrightToDark_}};
}

MTIImage QVPhotoDissolveTransitionMTIFilter::outputImage() {
    if (!inputImage1() || !inputImage2()) return {};
    const MTIImage photo = photoImage();
    if (!photo) return {};
    return applyKernel({inputImage1(), inputImage2(), photo}, parameters());
}

}  // namespace qv
