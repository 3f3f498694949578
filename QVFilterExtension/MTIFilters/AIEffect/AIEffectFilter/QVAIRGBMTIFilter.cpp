#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVAIRGBMTIFilter.h"

#include "QVFilterExtension/Private/QVSubjectCutOut.h"

namespace qv {

const QVFilterClass QVAIRGBMTIFilterClass{
    .name = "QVAIRGBMTIFilter",
    .superclass = &QVAIEffectMTIFilterClass,
    .title = "Subject print",
    .help = "The subject on a white page, its colours out of register",
    .factory = makeFilter<QVAIRGBMTIFilter>,
    .inputs = {{kInputImage, kSubjectMask}},
    .ignored = {"colors"},
};

MTIImage QVAIRGBMTIFilter::outputImage() {
    if (!inputImage() || !maskImage()) return {};
    const MTIImage page = MTIImage::initWithColor({1, 1, 1, 1}, pageIsSRGB(), inputImage().size());
    // The page shows through just as it would below a cut-out over transparency.
    MTIBlendWithMaskFilter subjectOnPage;
    subjectOnPage.setInputBackgroundImage(page);
    subjectOnPage.setInputImage(inputImage());
    subjectOnPage.setInputMask({softSubjectMask(*this), MTIColorComponent::red, MTIMaskMode::normal});
    subjectOnPage.setOutputPixelFormat(outputPixelFormat());
    return applyKernel({subjectOnPage.outputImage(), page}, parameters());
}

}  // namespace qv
