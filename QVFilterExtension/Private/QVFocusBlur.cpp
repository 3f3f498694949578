#include "QVFilterExtension/Private/QVFocusBlur.h"

#include <algorithm>

#include "Platform/ImageGraph/MTIFilters.h"

namespace qv {

MTIImage focusBlurredInput(const QVEffectMTIFilter& effect) {
    const std::vector<double>& settings = effect.extractValues();
    const double strength = settings.empty() ? kDefaultEffectValue : float(settings.front());
    const CGSize size = effect.inputImage().extent().size;

    MTIGaussianBlurFilter blur;
    blur.setInputImage(effect.inputImage());
    blur.setOutputPixelFormat(effect.outputPixelFormat());
    // 7.5 pixels per unit of 2 b on a frame of 720.
    blur.setRadius(float(2 * strength * 7.5 / 720 * std::min(size.width, size.height)));
    return blur.outputImage();
}

}  // namespace qv
