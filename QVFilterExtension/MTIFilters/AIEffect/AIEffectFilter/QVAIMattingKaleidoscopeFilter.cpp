#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVAIMattingKaleidoscopeFilter.h"

namespace qv {

const QVFilterClass QVAIMattingKaleidoscopeFilterClass{
    .name = "QVAIMattingKaleidoscopeFilter",
    .superclass = &QVAIMattingCopyFilterClass,
    .title = "Subject before a kaleidoscope",
    .help = "The subject in front of the frame in a kaleidoscope",
    .tags = {"mirror", "psychedelic", "pattern", "background", "cutout", "mask"},
    .factory = makeFilter<QVAIMattingKaleidoscopeFilter>,
};

MTIImage QVAIMattingKaleidoscopeFilter::outputImage() {
    kaleidoscopeMTIFilter_.setEffectValue(effectValue());
    return behindSubject(kaleidoscopeMTIFilter_);
}

}  // namespace qv
