#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVDesertFilter.h"

#include <cmath>

#include "Platform/Drawing/BitmapCanvas.h"
#include "QVFilterExtension/Private/NSBundle+QVMTIFilter.h"

namespace qv {

const QVFilterClass QVDesertFilterClass{
    .name = "QVDesertFilter",
    .superclass = &QVSceneBlendFilterClass,
    .title = "Turning to sand",
    .help = "The subject turns to blown sand from the feet up",
    .tags = {"desert", "dune", "dissolve", "double exposure", "dust", "mask"},
    .factory = makeFilter<QVDesertFilter>,
};

QVDesertFilter::QVDesertFilter(const QVFilterClass& filterClass) : QVSceneBlendFilter(filterClass) {
    setSceneAssetPath(qv_pathOfAsset("effect_scene_desert_1280_15.mp4"));
}

void QVDesertFilter::setInputImage(MTIImage image) {
    const CGSize before = inputImage().size(), now = image.size();
    QVSceneBlendFilter::setInputImage(std::move(image));
    if (std::abs(now.width - before.width) >= 2 || std::abs(now.height - before.height) >= 2)
        setBackgroundImage(createBackgroundImage());
}

MTIImage QVDesertFilter::createBackgroundImage() const {
    const CGSize size = inputImage().size();
    BitmapCanvas canvas(size, true);
    canvas.drawLinearGradient(
        {0, 0}, {0, size.height},
        {{0, {255 / 255.0, 233 / 255.0, 220 / 255.0}}, {1, {196 / 255.0, 140 / 255.0, 109 / 255.0}}});
    return MTIImage::imageWithUIImage(canvas.image());
}

}  // namespace qv
