#include "QVFilterExtension/MTIFilters/QVInterlayerFilter.h"

#include "Platform/ImageGraph/MTIFilters.h"

namespace qv {

const QVFilterClass QVInterlayerFilterClass{
    .name = "QVInterlayerFilter",
    .superclass = &QVMTIOneInputFilterClass,
    .help = "puts a layer between the subject and the background",
    .factory = makeFilter<QVInterlayerFilter>,
    .category = QVFilterCategory::subject,
    .inputs = QVFilterInputs::oneAndMask,
};

MTIImage QVInterlayerFilter::outputImage() {
    if (!inputImage()) return {};
    MTIImage result = inputImage();
    if (interlayerImage_) {
        MTIBlendFilter blendFilter(MTIBlendMode::normal);
        blendFilter.setInputBackgroundImage(inputImage());
        blendFilter.setInputImage(interlayerImage_);
        blendFilter.setOutputPixelFormat(outputPixelFormat());
        result = blendFilter.outputImage();
    }
    if (maskImage_) {
        MTIBlendWithMaskFilter maskFilter;
        maskFilter.setInputBackgroundImage(result);
        maskFilter.setInputImage(inputImage());
        maskFilter.setInputMask({maskImage_, MTIColorComponent::red, MTIMaskMode::normal});
        maskFilter.setOutputPixelFormat(outputPixelFormat());
        result = maskFilter.outputImage();
    }
    return result;
}

}  // namespace qv
