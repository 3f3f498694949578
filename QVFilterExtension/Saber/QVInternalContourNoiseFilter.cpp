#include "QVFilterExtension/Saber/QVInternalContourNoiseFilter.h"

namespace qv {

const QVFilterClass QVInternalContourNoiseFilterClass{
    .name = "QVInternalContourNoiseFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Wisps",
    .help = "Noise that drifts and curls moves the pixels of a line",
    .tags = {"distort", "flicker", "smoke", "turbulence"},
    .factory = makeFilter<QVInternalContourNoiseFilter>,
    .category = QVFilterCategory::subject,
    .ignored = {"effectValue"},
    .kind = QVFilterKind::auxiliary,
};

const QVFilterClass QVInternalContourNoiseFilter1Class{
    .name = "QVInternalContourNoiseFilter1",
    .superclass = &QVInternalContourNoiseFilterClass,
    .title = "Waves",
    .help = "Waves that run through a line",
    .tags = {"distort", "ripple", "plasma"},
};

const QVFilterClass QVInternalContourNoiseFilter3Class{
    .name = "QVInternalContourNoiseFilter3",
    .superclass = &QVInternalContourNoiseFilterClass,
    .title = "Jags",
    .help = "Jags that leap along a line",
    .tags = {"distort", "lightning", "electric"},
};

MTIParameters QVInternalContourNoiseFilter::parameters() const {
    return {{"uTime", float(iTime())},
            {"uDirection", param_.direction},
            {"uNSpeed", param_.noiseSpeed},
            {"uDistortion", param_.distortion},
            {"uAspectRatio", param_.aspectRatio},
            {"uNScale", param_.noiseScale},
            {"uComplexity", std::int32_t(param_.complexity)}};
}

}  // namespace qv
