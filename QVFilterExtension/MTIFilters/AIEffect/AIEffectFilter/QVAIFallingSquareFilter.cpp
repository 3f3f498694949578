#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVAIFallingSquareFilter.h"

#include "QVFilterExtension/Private/QVSubjectCutOut.h"

namespace qv {

const QVFilterClass QVAIFallingSquareFilterClass{
    .name = "QVAIFallingSquareFilter",
    .superclass = &QVAICelebrateFilterClass,
    .title = "Confetti behind",
    .help = "Squares of bright paper tumble down behind the subject",
    .tags = {"confetti", "party", "celebration", "birthday", "squares", "falling"},
    .factory = makeFilter<QVAIFallingSquareFilter>,
    .ignored = {"extraTransform"},
};

MTIImage QVAIFallingSquareFilter::outputImage() {
    const MTIImage subject = softSubjectCutOut(*this);
    if (!subject) return {};
    return blended(subject, applyKernel({inputImage()}, parameters()));
}

}  // namespace qv
