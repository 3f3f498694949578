#include "QVFilterCore/QVTileMTIFilter.h"

namespace qv {

namespace {

QVPropertyValue outSizeValue(const QVMTIFilter& filter) {
    return MTIVector::vectorWithCGSize(static_cast<const QVTileMTIFilter&>(filter).outSize());
}

void setOutSizeValue(QVMTIFilter& filter, const QVPropertyValue& value) {
    const auto& size = std::get<MTIVector>(value);
    static_cast<QVTileMTIFilter&>(filter).setOutSize({size[0], size[1]});
}

}  // namespace

const QVFilterClass QVTileMTIFilterClass{
    .name = "QVTileMTIFilter",
    .superclass = &QVMTIOneInputFilterClass,
    .help = "repeats the picture over an area",
    .factory = makeFilter<QVTileMTIFilter>,
    .category = QVFilterCategory::mirror,
    .properties = {{"outSize", QVPropertyType::vector, 0, kMaximumImageSide,
                    "width,height of the area in pixels; 0,0 is the picture's own", outSizeValue,
                    setOutSizeValue}},
};

MTIImage QVTileMTIFilter::outputImage() {
    if (!inputImage() || outSize_.width <= 0 || outSize_.height <= 0 || outSize_ == inputImage().size())
        return inputImage();
    const auto kernel = filterClass().kernel();
    return kernel ? kernel->applyToInputImages({inputImage()}, parameters(), outSize_, outputPixelFormat())
                  : MTIImage();
}

}  // namespace qv
