#include "QVFilterCore/QVSpiritFilter.h"

#include <cmath>

#include "Platform/ImageGraph/ImageNode.h"

namespace qv {

const QVFilterClass QVSpiritFilterClass{
    .name = "QVSpiritFilter",
    .superclass = &QVMTIOneInputFilterClass,
    .help = "draws sprites over the picture",
    .factory = makeFilter<QVSpiritFilter>,
    .category = QVFilterCategory::particle,
};

namespace {

bool isFinite(const CGAffineTransform& t) {
    return std::isfinite(t.a) && std::isfinite(t.b) && std::isfinite(t.c) && std::isfinite(t.d) &&
           std::isfinite(t.tx) && std::isfinite(t.ty);
}

/// Whether a sprite covers any of a frame that is `frameAspect` half-widths high each way from the centre.
bool isVisible(const SpiritParam& param, double frameAspect) {
    if (!param.texture || !(param.alpha > 0) || !isFinite(param.trans)) return false;
    const Bitmap& bitmap = param.texture->bitmap;
    const double aspect = double(bitmap.height) / bitmap.width;
    const CGRect box = CGRectApplyAffineTransform(CGRectMake(-1, -aspect, 2, 2 * aspect), param.trans);
    return !CGRectIsEmpty(CGRectIntersection(box, CGRectMake(-1, -frameAspect, 2, 2 * frameAspect)));
}

MTIColor tintOf(const SpiritParam& param) {
    if (!param.tintColor) return {1, 1, 1, 1};
    const UIColor& tint = *param.tintColor;
    return {float(tint.red()), float(tint.green()), float(tint.blue()), float(tint.alpha())};
}

}  // namespace

MTIImage QVSpiritFilter::outputImage() {
    const MTIImage& input = inputImage();
    if (!input) return {};
    SpritePass pass;
    const CGSize size = input.size();
    for (const SpiritParam& param : params_) {
        if (isVisible(param, size.height / size.width))
            pass.sprites.push_back({param.trans, param.alpha, tintOf(param), param.texture});
    }
    if (pass.sprites.empty()) return input;

    auto node = std::make_shared<ImageNode>();
    node->operation = std::move(pass);
    node->inputs = {input};
    node->width = int(size.width);
    node->height = int(size.height);
    node->pixelFormat = outputPixelFormat();
    if (input.alphaType() == MTIAlphaType::alphaIsOne) node->alphaType = MTIAlphaType::alphaIsOne;
    return MTIImage(std::move(node));
}

}  // namespace qv
