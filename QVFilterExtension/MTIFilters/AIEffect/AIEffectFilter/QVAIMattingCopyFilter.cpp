#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVAIMattingCopyFilter.h"

#include <algorithm>
#include <cmath>

#include "Platform/ImageGraph/MTIFilters.h"
#include "QVFilterExtension/Private/QVSubjectCutOut.h"

namespace qv {

const QVFilterClass QVAIMattingCopyFilterClass{
    .name = "QVAIMattingCopyFilter",
    .superclass = &QVAIEffectMTIFilterClass,
    .title = "Subject copies",
    .help = "An effect on the subject alone or on the background alone",
    .factory = makeFilter<QVAIMattingCopyFilter>,
    .inputs = {{kInputImage, kSubjectMask}},
    .ignored = {"colors"},
};

QVAIMattingCopyFilter::QVAIMattingCopyFilter(const QVFilterClass& filterClass)
    : QVAIEffectMTIFilter(filterClass) {
    QVAIMattingCopyFilter::setEffectValue(effectValue());
}

void QVAIMattingCopyFilter::setEffectValue(float value) {
    QVAIEffectMTIFilter::setEffectValue(value);
    const int levels = filterClass().levels();
    if (levels < 2) return;
    const double step = 1.0 / (levels - 1), nearest = std::trunc((0.5 * step + double(value)) / step);
    QVAIEffectMTIFilter::setLevel(nearest >= 0 && nearest < levels ? std::int64_t(nearest) : levels - 1);
}

void QVAIMattingCopyFilter::setLevel(std::int64_t level) {
    const int levels = filterClass().levels();
    if (isValidLevel(level, std::size_t(levels)))
        setEffectValue(float(level) / float(std::max(levels - 1, 1)));
}

MTIImage QVAIMattingCopyFilter::overFrame(QVEffectMTIFilter& effect) const {
    if (!inputImage() || !maskImage()) return {};
    effect.setInputImage(subjectCutOut(*this, maskImage()));
    effect.setOutputPixelFormat(outputPixelFormat());
    MTIBlendFilter normalBlend(MTIBlendMode::normal);
    normalBlend.setInputBackgroundImage(inputImage());
    normalBlend.setInputImage(effect.outputImage());
    normalBlend.setOutputPixelFormat(outputPixelFormat());
    return normalBlend.outputImage();
}

MTIImage QVAIMattingCopyFilter::behindSubject(QVEffectMTIFilter& effect) const {
    if (!inputImage() || !maskImage()) return {};
    effect.setInputImage(inputImage());
    effect.setOutputPixelFormat(outputPixelFormat());
    MTIBlendWithMaskFilter maskBlend;
    maskBlend.setInputBackgroundImage(effect.outputImage());
    maskBlend.setInputImage(inputImage());
    maskBlend.setInputMask({maskImage(), MTIColorComponent::red, MTIMaskMode::normal});
    maskBlend.setOutputPixelFormat(outputPixelFormat());
    return maskBlend.outputImage();
}

float QVAIMattingCopyFilter::firstSetting(float otherwise) const {
    return extractValues().empty() ? otherwise : float(extractValues().front());
}

}  // namespace qv
