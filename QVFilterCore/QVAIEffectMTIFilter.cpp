#include "QVFilterCore/QVAIEffectMTIFilter.h"

namespace qv {

namespace {
using Effect = QVAIEffectMTIFilter;
}  // namespace

const QVFilterClass QVAIEffectMTIFilterClass{
    .name = "QVAIEffectMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .help = "An effect that knows the subject by a mask",
    .factory = makeFilter<QVAIEffectMTIFilter>,
    .category = QVFilterCategory::subject,
    .inputs = QVFilterInputs::oneAndMask,
    .properties =
        {
            qvProperty<&Effect::extraTransform, &Effect::setExtraTransform>("extraTransform",
                                                                            "from mask space to the frame"),
            qvProperty<&Effect::colors, &Effect::setColors>("colors",
                                                            "colours of the effect, its own when empty"),
        },
};

}  // namespace qv
