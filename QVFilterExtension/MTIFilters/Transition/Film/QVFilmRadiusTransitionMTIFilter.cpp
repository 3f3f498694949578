#include "QVFilterExtension/MTIFilters/Transition/Film/QVFilmRadiusTransitionMTIFilter.h"

#include "QVFilterExtension/Private/QVAssetCache.h"

namespace qv {

namespace {

QVAssetCache& assets() {
    static auto& cache = *new QVAssetCache;
    return cache;
}

/// As wide as the frame; only the sides of the gate are stretched, so that the perforations keep their shape.
UIImage fittedFrame(const UIImage& asset, CGSize size) {
    constexpr UIEdgeInsets kCaps{230, 96, 230, 96};  // of the asset: strip and corners
    const double factor = size.width / asset.size().width;
    const UIEdgeInsets caps{kCaps.top * factor, kCaps.left * factor, kCaps.bottom * factor,
                            kCaps.right * factor};
    return scaleToSize(scale(asset, factor).resizableImageWithCapInsets(caps, UIImage::ResizingMode::stretch),
                       size);
}

}  // namespace

const QVFilterClass QVFilmRadiusTransitionMTIFilterClass{
    .name = "QVFilmRadiusTransitionMTIFilter",
    .superclass = &QVTransitionMTIFilterClass,
    .title = "Jammed projector",
    .help = "A splice jams in the projector's gate: the light flares, the film jumps and settles",
    .tags = {"old film", "splice", "burn", "jump", "vintage"},
    .factory = makeFilter<QVFilmRadiusTransitionMTIFilter>,
};

QVFilmRadiusTransitionMTIFilter::QVFilmRadiusTransitionMTIFilter(const QVFilterClass& filterClass)
    : QVTransitionMTIFilter(filterClass) {}

MTIImage QVFilmRadiusTransitionMTIFilter::frameImage() const {
    if (!inputImage1()) return {};
    return assets().fittedImage("transitions_flim_06.png", inputImage1().size(), fittedFrame);
}

CGAffineTransform QVFilmRadiusTransitionMTIFilter::getTranslationTransformWithProgress(double p) const {
    double dx = 0;
    if (p > 0.52 && p < 0.56)
        dx = 0.3;
    else if (p >= 0.56 && p < 0.6)
        dx = 0.02;
    else if (p > 0.64 && p <= 0.68)
        dx = -0.02;
    return CGAffineTransformTranslate(CGAffineTransformIdentity, dx * inputImage1().size().width, 0);
}

MTIImage QVFilmRadiusTransitionMTIFilter::outputImage() {
    const MTIImage picture = QVTransitionMTIFilter::outputImage();
    const double p = progress();
    const CGAffineTransform jump = getTranslationTransformWithProgress(p);
    if (p <= 0.52 || p > 0.56) return picture.imageByApplyingTransform(jump);

    blurMTIFilter_.setInputImage1(picture);
    blurMTIFilter_.setInputImage2(picture);
    blurMTIFilter_.setProgress(0.6f);
    radiusBlackFrameFilter_.setInputImage1(blurMTIFilter_.outputImage().imageByApplyingTransform(jump));
    return radiusBlackFrameFilter_.outputImage();
}

}  // namespace qv
