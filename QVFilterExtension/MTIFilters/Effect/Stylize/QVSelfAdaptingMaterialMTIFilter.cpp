#include "QVFilterExtension/MTIFilters/Effect/Stylize/QVSelfAdaptingMaterialMTIFilter.h"

#include <array>

#include "QVFilterCore/QVClipTime.h"
#include "QVFilterExtension/Private/QVAssetCache.h"

namespace qv {

namespace {

using Effect = QVSelfAdaptingMaterialMTIFilter;
constexpr std::array<std::string_view, 4> kMaterials = {"holographic foil", "gold leaf", "marble",
                                                        "own picture"};
constexpr std::array<const char*, 3> kFiles = {"filter_material_foil.png", "filter_material_gold.png",
                                               "filter_material_marble.png"};
constexpr double kPeriod = 8;

QVAssetCache& assets() {
    static auto& cache = *new QVAssetCache;
    return cache;
}

}  // namespace

const QVFilterClass QVSelfAdaptingMaterialMTIFilterClass{
    .name = "QVSelfAdaptingMaterialMTIFilter",
    .superclass = &QVEffectMTIFilterClass,
    .title = "Embossed material",
    .help = "The picture embossed in foil, gold or stone that follows its shapes and light",
    .tags = {"material", "texture", "holographic", "gold", "marble", "metal", "relief"},
    .factory = makeFilter<QVSelfAdaptingMaterialMTIFilter>,
    .category = QVFilterCategory::stylize,
    .inputs = {{kInputImage,
                qvInput<&Effect::setMaterialImage>({.name = "materialImage",
                                                    .role = QVInputRole::texture,
                                                    .help = "the material of the level of its own",
                                                    .isRequired = false})}},
    .isPhotoTimeConst = false,
    .properties = {qvLevels(
        {.title = "Material", .help = "what the picture is made of", .variants = kMaterials})},
};

QVSelfAdaptingMaterialMTIFilter::QVSelfAdaptingMaterialMTIFilter(const QVFilterClass& filterClass)
    : QVEffectMTIFilter(filterClass) {}

void QVSelfAdaptingMaterialMTIFilter::setLevel(std::int64_t level) {
    if (isValidLevel(level, kMaterials.size())) QVEffectMTIFilter::setLevel(level);
}

MTIParameters QVSelfAdaptingMaterialMTIFilter::parameters() const {
    return {{"effectValue", effectValue()}, {"turn", float(timeCycleAt(iTime(), kPeriod).part)}};
}

MTIImage QVSelfAdaptingMaterialMTIFilter::outputImage() {
    const bool isOwn = std::size_t(level()) == kFiles.size();
    const char* file = kFiles[isOwn ? 0 : std::size_t(level())];
    const MTIImage material =
        isOwn && materialImage_ ? materialImage_ : assets().mtiImageNamed(file, MTIAlphaType::alphaIsOne);
    return material ? applyKernel({inputImage(), material}, parameters()) : MTIImage();
}

}  // namespace qv
