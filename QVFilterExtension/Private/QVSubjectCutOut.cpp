#include "QVFilterExtension/Private/QVSubjectCutOut.h"

#include "Platform/ImageGraph/MTIFilters.h"

namespace qv {

MTIImage subjectCutOut(const QVAIEffectMTIFilter& effect, const MTIImage& mask) {
    MTIBlendWithMaskFilter filter;
    filter.setInputBackgroundImage(MTIImage::initWithColor({0, 0, 0, 0}, false, effect.inputImage().size()));
    filter.setInputImage(effect.inputImage());
    filter.setInputMask({mask, MTIColorComponent::red, MTIMaskMode::normal});
    filter.setOutputPixelFormat(effect.outputPixelFormat());
    return filter.outputImage();
}

MTIImage softSubjectCutOut(const QVAIEffectMTIFilter& effect) {
    if (!effect.inputImage() || !effect.maskImage()) return {};
    MTIGaussianBlurFilter softened;
    softened.setInputImage(effect.maskImage());
    softened.setRadius(1);
    return subjectCutOut(effect, softened.outputImage());
}

}  // namespace qv
