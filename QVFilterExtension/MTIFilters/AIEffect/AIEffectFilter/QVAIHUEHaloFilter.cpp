#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVAIHUEHaloFilter.h"

#include "QVFilterExtension/QVMTIFilterUtil.h"

namespace qv {

const QVFilterClass QVAIHUEHaloFilterClass{
    .name = "QVAIHUEHaloFilter",
    .superclass = &QVAIContourHaloFilterClass,
    .title = "Glow",
    .help = "A soft glow of one colour round the subject",
    .tags = {"halo", "aura", "outline", "rim light", "neon"},
    .factory = makeFilter<QVAIHUEHaloFilter>,
    .properties = {kLightColors},
    .ignored = {"iTime"},
    .kind = QVFilterKind::effect,
};

std::optional<QVSaberParam> QVAIHUEHaloFilter::glowParam() const {
    return QVSaberParam{
        .aspectRatio = 1.95f,
        .complexity = 5,
        .direction = 90.0f,
        .distortType = 2,
        .distortion = 0.02f,
        .noiseScale = 8.9f,
        .noiseSpeed = 0.09f,
        .thickness = 0.08f,
        .colArray = {{QVBezierLineColorMake(lineColor(), 0.0f),
                      QVBezierLineColorMake(HueColor(UIColor(1, 1, 1, 0), getOffsetH()), 1.0f)}},
    };
}

}  // namespace qv
