#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVAIFreezHaloFilter.h"

#include "QVFilterExtension/QVMTIFilterUtil.h"

namespace qv {

const QVFilterClass QVAIFreezHaloFilterClass{
    .name = "QVAIFreezHaloFilter",
    .superclass = &QVAIContourHaloFilterClass,
    .title = "Frost halo",
    .help = "A wide halo of cold wisps that flicker round the subject",
    .tags = {"glow", "aura", "outline", "cold", "energy", "saber"},
    .factory = makeFilter<QVAIFreezHaloFilter>,
    .properties = {kLightColors},
    .kind = QVFilterKind::effect,
};

std::optional<QVSaberParam> QVAIFreezHaloFilter::glowParam() const {
    return QVSaberParam{
        .aspectRatio = 1.0f,
        .complexity = 5,
        .direction = 0.0f,
        .distortType = 0,
        .distortion = 0.02f,
        .noiseScale = 15.9f,
        .noiseSpeed = 0.09f,
        .thickness = 0.12f,
        .colArray = {{QVBezierLineColorMake(lineColor(), 0.0f),
                      QVBezierLineColorMake(HueColor(UIColor(1, 1, 1, 0), getOffsetH()), 1.0f)}},
    };
}

}  // namespace qv
