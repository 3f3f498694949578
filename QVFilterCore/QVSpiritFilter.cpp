#include "QVFilterCore/QVSpiritFilter.h"

#include <cmath>

#include "Platform/ImageGraph/ImageNode.h"

namespace qv {

const QVFilterClass QVSpiritFilterClass{
    .name = "QVSpiritFilter",
    .superclass = &QVMTIOneInputFilterClass,
    .title = "Sprites",
    .help = "Draws sprites over the picture",
    .tags = {"overlay", "stickers", "particles"},
    .factory = makeFilter<QVSpiritFilter>,
    .category = QVFilterCategory::particle,
};

namespace {

bool isDrawable(const SpiritParam& param) {
    const CGAffineTransform& t = param.trans;
    return param.texture && std::isfinite(param.alpha) && std::isfinite(t.a + t.b + t.c + t.d + t.tx + t.ty);
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
        if (isDrawable(param))
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
