#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVAIGoldImaginaryFilter.h"

#include "Platform/ImageGraph/MTIFilters.h"
#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVAIMateriaLineFilter.h"
#include "QVFilterExtension/Private/QVAssetCache.h"
#include "QVFilterExtension/Private/QVSubjectCutOut.h"

namespace qv {

namespace {

QVAssetCache& assets() {
    static auto& cache = *new QVAssetCache;
    return cache;
}

}  // namespace

const QVFilterClass QVAIGoldImaginaryFilterClass{
    .name = "QVAIGoldImaginaryFilter",
    .superclass = &QVAIBaseLineMTIFilterClass,
    .title = "Gold outline",
    .help = "A line of gold leaf around the subject, before a world turned to ash",
    .tags = {"foil", "metal", "luxury", "rich", "celebrate"},
    .factory = makeFilter<QVAIGoldImaginaryFilter>,
    .ignored = {"effectValue"},
    .kind = QVFilterKind::effect,
};

QVAIGoldImaginaryFilter::QVAIGoldImaginaryFilter(const QVFilterClass& filterClass)
    : QVAIBaseLineMTIFilter(filterClass) {
    lookupFilter_.setInputColorLookupTable(assets().mtiImageNamed("celebrate_ashen_lookup.png"));
}

MTIImage QVAIGoldImaginaryFilter::contourUIImage() const {
    constexpr double kWidth = 6.0;
    return getUIBezierPathImageWithPath(contourPath(), kWidth, lineColor());
}

MTIImage QVAIGoldImaginaryFilter::tintedMaterial() const {
    const MTIImage material =
        assets().fittedImage("celebrate_gold_materia.png", inputImage().size(), scaleToSize);
    const UIColor tint = lineColor();
    MTIBlendFilter tintFilter(MTIBlendMode::color);
    tintFilter.setInputImage(MTIImage::initWithColor(
        {float(tint.red()), float(tint.green()), float(tint.blue()), float(tint.alpha())}, false, {1, 1}));
    tintFilter.setInputBackgroundImage(material);
    return tintFilter.outputImage();
}

MTIImage QVAIGoldImaginaryFilter::imageWithLine() {
    const MTIImage line = contourUIImage();
    if (!line) return {};
    QVAIMateriaLineFilter materiaFilter;
    materiaFilter.setInterlayerImage(line);
    materiaFilter.setMateriaImage(tintedMaterial());
    lookupFilter_.setInputImage(inputImage());
    lookupFilter_.setOutputPixelFormat(outputPixelFormat());
    const MTIImage masks = subjectMasks(*this);
    return over(behindSubject(lookupFilter_.outputImage(), materiaFilter.outputImage(), masks),
                subjectCutOut(*this, masks, MTIColorComponent::green));
}

}  // namespace qv
