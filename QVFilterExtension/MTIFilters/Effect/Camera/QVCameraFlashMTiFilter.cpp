#include "QVFilterExtension/MTIFilters/Effect/Camera/QVCameraFlashMTiFilter.h"

#include "Platform/Drawing/BitmapCanvas.h"
#include "QVFilterExtension/Private/CameraClock.h"
#include "QVFilterExtension/Private/QVAssetCache.h"

namespace qv {

const QVFilterClass QVCameraFlashMTiFilterClass{
    .name = "QVCameraFlashMTiFilter",
    .superclass = &QVProgressBasedEffectMTIFilterClass,
    .title = "Camera: shutter flash",
    .help = "A black and white finder comes into focus, the flash fires, and the picture is in colour",
    .tags = {"flash", "shutter", "photo", "viewfinder", "black and white", "snapshot"},
    .factory = makeFilter<QVCameraFlashMTiFilter>,
    .category = QVFilterCategory::camera,
};

MTIImage QVCameraFlashMTiFilter::getImageWithImageName(const std::string& fileName) const {
    static auto& cache = *new QVAssetCache;
    return cache.fittedImage(fileName, inputImage().size(), [](const UIImage& asset, CGSize size) {
        const double s = shorterSide(size) / 1080 * 1.6;
        BitmapCanvas canvas(size);
        canvas.drawImage(asset, CGRectMake(size.width / 2 - 720 * s, size.height / 2 - 405 * s,
                                           1.5 * s * asset.size().width, 1.5 * s * asset.size().height));
        return canvas.image();
    });
}

MTIImage QVCameraFlashMTiFilter::centerBlackImage() const {
    return getImageWithImageName("camera_film_blackCenter.png");
}

MTIImage QVCameraFlashMTiFilter::centerRedImage() const {
    return getImageWithImageName("camera_film_redCenter.png");
}

MTIParameters QVCameraFlashMTiFilter::parameters() const {
    return {{"progress", float(cameraProgress(*this))}};
}

MTIImage QVCameraFlashMTiFilter::outputImage() {
    if (!inputImage()) return {};
    const double p = cameraProgress(*this);
    bwFilter_.setInputImage(inputImage());
    bwFilter_.setStrength(p <= 0.63 ? 1.0f : 0.0f);

    const double radius = shorterSide(inputImage().size()) / 720 * (15 * double(effectValue()) + 5);
    blurFilter_.setInputImage(bwFilter_.outputImage());
    blurFilter_.setRadius(float(radius * (1 - smoothStep(2 * p))));
    MTIImage picture = blurFilter_.outputImage();

    // Both are drawn for the first frame: the blink is too short to wait for.
    const MTIImage red = centerRedImage(), black = centerBlackImage();
    const bool isRed = (0.5 < p && p <= 0.51) || (0.52 < p && p <= 0.53);
    if (const MTIImage& marks = isRed ? red : black) {
        blendFilter_.setInputImage(marks);
        blendFilter_.setInputBackgroundImage(picture);
        picture = blendFilter_.outputImage();
    }
    return applyKernel({picture}, parameters());
}

}  // namespace qv
