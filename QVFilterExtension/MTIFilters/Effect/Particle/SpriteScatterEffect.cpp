#include "QVFilterExtension/MTIFilters/Effect/Particle/SpriteScatterEffect.h"

#include <algorithm>
#include <cmath>

#include "QVFilterExtension/Private/QVAssetCache.h"

namespace qv {

namespace {

constexpr double kMostSprites = 1000;

QVAssetCache& assets() {
    static auto& cache = *new QVAssetCache;
    return cache;
}

}  // namespace

SpriteScatterEffect::SpriteScatterEffect(const QVFilterClass& filterClass, const std::string& assetName)
    : QVEffectMTIFilter(filterClass), spiritTexture_(assets().textureNamed(assetName)) {}

MTIImage SpriteScatterEffect::outputImage() {
    if (!inputImage()) return {};
    const CGSize size = inputImage().size();
    spiritFilter_.setParams(sprites(float(size.height / size.width)));
    spiritFilter_.setInputImage(inputImage());
    spiritFilter_.setOutputPixelFormat(outputPixelFormat());
    return spiritFilter_.outputImage();
}

double SpriteScatterEffect::fract(double x) {
    return x - std::floor(x);
}

std::int64_t SpriteScatterEffect::spriteCount(double count) {
    return count > 0 ? std::int64_t(std::min(count, kMostSprites)) : 0;
}

}  // namespace qv
