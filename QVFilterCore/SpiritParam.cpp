#include "QVFilterCore/SpiritParam.h"

#include "Platform/ImageGraph/ImageNode.h"

namespace qv {

SpiritParam::Texture SpiritParam::spiritTextureWithImage(const UIImage& image, std::string name) {
    if (!image) return nullptr;
    return std::make_shared<const SpriteTexture>(SpriteTexture{image.bitmap(), std::move(name)});
}

SpiritParam SpiritParam::paramWithTrans(const CGAffineTransform& trans, Texture texture) {
    return {.trans = trans, .texture = std::move(texture)};
}

SpiritParam SpiritParam::paramWithTrans(const CGAffineTransform& trans, float alpha, Texture texture) {
    return {.trans = trans, .alpha = alpha, .texture = std::move(texture)};
}

SpiritParam SpiritParam::paramWithTrans(const CGAffineTransform& trans, const UIColor& tintColor,
                                        Texture texture) {
    return {.trans = trans, .tintColor = tintColor, .texture = std::move(texture)};
}

SpiritParam SpiritParam::paramWithTrans(const CGAffineTransform& trans, float alpha, const UIColor& tintColor,
                                        Texture texture) {
    return {.trans = trans, .alpha = alpha, .tintColor = tintColor, .texture = std::move(texture)};
}

}  // namespace qv
