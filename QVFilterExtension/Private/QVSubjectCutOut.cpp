#include "QVFilterExtension/Private/QVSubjectCutOut.h"

#include "Platform/ImageGraph/MTIKernel.h"

namespace qv {

MTIImage subjectCutOut(const QVAIEffectMTIFilter& effect, const MTIImage& mask, MTIColorComponent component) {
    MTIBlendWithMaskFilter filter;
    filter.setInputBackgroundImage(MTIImage::initWithColor({0, 0, 0, 0}, false, effect.inputImage().size()));
    filter.setInputImage(effect.inputImage());
    filter.setInputMask({mask, component, MTIMaskMode::normal});
    filter.setOutputPixelFormat(effect.outputPixelFormat());
    return filter.outputImage();
}

MTIImage softSubjectMask(const QVAIEffectMTIFilter& effect) {
    MTIGaussianBlurFilter softened;
    softened.setInputImage(effect.maskImage());
    softened.setRadius(1);
    return softened.outputImage();
}

MTIImage subjectMasks(const QVAIEffectMTIFilter& effect) {
    const MTIImage& mask = effect.maskImage();
    const auto& kernel = stockKernel("MTIJoinMasks");
    return mask && kernel ? kernel->applyToInputImages({mask, softSubjectMask(effect)}, {}, mask.size(),
                                                       MTIPixelFormat::unspecified)
                          : MTIImage();
}

MTIImage softSubjectCutOut(const QVAIEffectMTIFilter& effect) {
    if (!effect.inputImage() || !effect.maskImage()) return {};
    return subjectCutOut(effect, softSubjectMask(effect));
}

}  // namespace qv
