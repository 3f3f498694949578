#include "QVFilterCore/QVTileMTIFilter.h"

namespace qv {

const QVFilterClass QVTileMTIFilterClass{
    .name = "QVTileMTIFilter",
    .superclass = &QVMTIOneInputFilterClass,
    .title = "Tiles",
    .help = "Repeats the picture over an area",
    .tags = {"repeat", "pattern", "wallpaper"},
    .factory = makeFilter<QVTileMTIFilter>,
    .category = QVFilterCategory::mirror,
    .properties =
        {
            qvProperty<&QVTileMTIFilter::outSize, &QVTileMTIFilter::setOutSize>({
                .name = "outSize",
                .title = "Area",
                .help = "width and height of the area; 0,0 is the picture's own",
                .maximum = kMaximumImageSide,
                .unit = QVUnit::pixels,
                .step = 1,
            }),
        },
};

MTIImage QVTileMTIFilter::outputImage() {
    if (!inputImage() || outSize_.width <= 0 || outSize_.height <= 0 || outSize_ == inputImage().size())
        return inputImage();
    const auto kernel = filterClass().kernel();
    return kernel ? kernel->applyToInputImages({inputImage()}, parameters(), outSize_, outputPixelFormat())
                  : MTIImage();
}

}  // namespace qv
