#include "QVFilterCore/QVAdjustGroupMTIFilter.h"

#include <algorithm>
#include <cmath>

namespace qv {

namespace {

/// A setting deep inside the tool value as a property of the filter.
template <auto Get, auto Set>
QVProperty adjustment(QVProperty facts) {
    facts.unit = QVUnit::fraction;
    facts.type = QVPropertyType::real;
    facts.get = [](const QVMTIFilter& filter) -> QVPropertyValue {
        return double(
            (static_cast<const QVAdjustGroupMTIFilter&>(filter).adjustToolValue().adjustValue().*Get)());
    };
    facts.set = [](QVMTIFilter& filter, const QVPropertyValue& number) {
        auto& group = static_cast<QVAdjustGroupMTIFilter&>(filter);
        QVAdjustToolValue value = group.adjustToolValue();
        (value.adjustValue().*Set)(float(std::get<double>(number)));
        group.setAdjustToolValue(value);
    };
    return facts;
}

template <auto Get, auto Set>
QVProperty curveLevel(QVProperty facts) {
    facts.maximum = 100;
    facts.unit = QVUnit::percent;
    facts.type = QVPropertyType::real;
    facts.get = [](const QVMTIFilter& filter) -> QVPropertyValue {
        const auto& group = static_cast<const QVAdjustGroupMTIFilter&>(filter);
        return (group.adjustToolValue().curvesToolValue().luminanceCurve().*Get)();
    };
    facts.set = [](QVMTIFilter& filter, const QVPropertyValue& number) {
        auto& group = static_cast<QVAdjustGroupMTIFilter&>(filter);
        QVAdjustToolValue value = group.adjustToolValue();
        PGCurvesToolValue curves = value.curvesToolValue();
        (curves.luminanceCurve().*Set)(std::get<double>(number));
        value.setCurvesToolValue(curves);
        group.setAdjustToolValue(value);
    };
    return facts;
}

}  // namespace

const QVFilterClass QVAdjustGroupMTIFilterClass{
    .name = "QVAdjustGroupMTIFilter",
    .superclass = &QVMTIOneInputFilterClass,
    .title = "Tone adjustment",
    .help = "Adjusts tones by a luminance curve, warmth, brightness and sharpness",
    .tags = {"curves", "levels", "colour correction", "grade", "contrast", "sharpen"},
    .factory = makeFilter<QVAdjustGroupMTIFilter>,
    .category = QVFilterCategory::adjustment,
    .properties =
        {
            adjustment<&QVAdjustValue::warmth, &QVAdjustValue::setWarmth>(
                {.name = "warmth", .help = "-1 cool to 1 warm", .minimum = -1, .maximum = 1}),
            adjustment<&QVAdjustValue::brightness, &QVAdjustValue::setBrightness>(
                {.name = "brightness",
                 .help = "-1 dark to 1 bright; black and white stay",
                 .minimum = -1,
                 .maximum = 1}),
            adjustment<&QVAdjustValue::sharpen, &QVAdjustValue::setSharpen>({
                .name = "sharpen",
                .title = "Sharpness",
                .help = "how much detail is added",
            }),
            curveLevel<&PGCurve::blacksLevel, &PGCurve::setBlacksLevel>({
                .name = "blacksLevel",
                .title = "Blacks",
                .help = "what black becomes",
            }),
            curveLevel<&PGCurve::shadowsLevel, &PGCurve::setShadowsLevel>({
                .name = "shadowsLevel",
                .title = "Shadows",
                .help = "what a quarter of white becomes",
            }),
            curveLevel<&PGCurve::midtonesLevel, &PGCurve::setMidtonesLevel>({
                .name = "midtonesLevel",
                .title = "Midtones",
                .help = "what half of white becomes",
            }),
            curveLevel<&PGCurve::highlightsLevel, &PGCurve::setHighlightsLevel>({
                .name = "highlightsLevel",
                .title = "Highlights",
                .help = "what three quarters of white become",
            }),
            curveLevel<&PGCurve::whitesLevel, &PGCurve::setWhitesLevel>({
                .name = "whitesLevel",
                .title = "Whites",
                .help = "what white becomes",
            }),
        },
};

const MTIImage& QVAdjustGroupMTIFilter::curveTable() {
    constexpr int kEntries = 256;
    const PGCurve& curve = adjustToolValue_.curvesToolValue().luminanceCurve();
    if (curveTable_ && curveOfTable_ == curve) return curveTable_;
    auto pixels = std::make_shared<std::vector<std::uint8_t>>();
    for (int i = 0; i < kEntries; ++i) {
        const long level = std::lround(curve.valueAt(i / double(kEntries - 1)) * 65535);
        pixels->insert(pixels->end(), {std::uint8_t(level >> 8), std::uint8_t(level & 255), 0, 255});
    }
    curveTable_ = MTIImage::imageWithBitmap({kEntries, 1, std::move(pixels)});
    curveOfTable_ = curve;
    return curveTable_;
}

MTIImage QVAdjustGroupMTIFilter::outputImage() {
    const QVAdjustValue& adjust = adjustToolValue_.adjustValue();
    adjustFilter_.setAdjustValue(adjust);
    adjustFilter_.setInputImage(inputImage());
    adjustFilter_.setOutputPixelFormat(outputPixelFormat());
    MTIImage image = adjustFilter_.outputImage();
    if (adjustToolValue_.curvesToolValue().luminanceCurve() != PGCurve())
        image = applyKernel({image, curveTable()}, {});
    if (!image || !(adjust.sharpen() > 0)) return image;

    constexpr double kRadius = 1.2, kReferenceSide = 1080;
    const double shorterSide = std::min(image.size().width, image.size().height);
    sharpenFilter_.setRadius(float(std::max(0.5, kRadius * shorterSide / kReferenceSide)));
    sharpenFilter_.setIntensity(adjust.sharpen());
    sharpenFilter_.setInputImage(image);
    sharpenFilter_.setOutputPixelFormat(outputPixelFormat());
    return sharpenFilter_.outputImage();
}

}  // namespace qv
