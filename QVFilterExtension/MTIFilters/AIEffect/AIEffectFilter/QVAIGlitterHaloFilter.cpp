#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVAIGlitterHaloFilter.h"

#include "QVFilterExtension/QVMTIFilterUtil.h"

namespace qv {

const QVFilterClass QVAIGlitterHaloFilterClass{
    .name = "QVAIGlitterHaloFilter",
    .superclass = &QVAIContourHaloFilterClass,
    .title = "Gold halo",
    .help = "A warm golden glow round the subject",
    .tags = {"glow", "aura", "outline", "rim light", "backlight"},
    .factory = makeFilter<QVAIGlitterHaloFilter>,
    .properties = {kLightColors},
    .ignored = {"iTime"},
    .kind = QVFilterKind::effect,
};

std::optional<QVSaberParam> QVAIGlitterHaloFilter::glowParam() const {
    return QVSaberParam{
        .aspectRatio = 1.95f,
        .complexity = 5,
        .direction = 90.0f,
        .distortType = 2,
        .distortion = 0.02f,
        .noiseScale = 8.9f,
        .noiseSpeed = 0.09f,
        .thickness = 0.08f,
        .colArray = {{QVBezierLineColorMake(UIColor(1, 0.6666666666666666, 0.00392156862745098, 0.5), 0.0f),
                      QVBezierLineColorMake(HueColor(UIColor(1, 0.6666666666666666, 0, 0), getOffsetH()),
                                            1.0f)}},
    };
}

}  // namespace qv
