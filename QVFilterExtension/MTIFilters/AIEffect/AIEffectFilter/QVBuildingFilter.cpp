#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVBuildingFilter.h"

#include "QVFilterExtension/Private/NSBundle+QVMTIFilter.h"

namespace qv {

const QVFilterClass QVBuildingFilterClass{
    .name = "QVBuildingFilter",
    .superclass = &QVSceneBlendFilterClass,
    .title = "Turning to lit windows",
    .help = "The subject turns into a house at night from the feet up",
    .tags = {"city", "facade", "building", "windows", "dissolve", "double exposure", "mask"},
    .factory = makeFilter<QVBuildingFilter>,
};

QVBuildingFilter::QVBuildingFilter(const QVFilterClass& filterClass) : QVSceneBlendFilter(filterClass) {
    setSceneAssetPath(qv_pathOfAsset("effect_scene_build_1280_15.mp4"));
    setBackgroundImage(
        MTIImage::initWithColor({25 / 255.0f, 47 / 255.0f, 58 / 255.0f, 1}, false, CGSize{1, 1}));
}

}  // namespace qv
