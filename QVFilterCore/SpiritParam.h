#pragma once

#include <memory>
#include <optional>
#include <string>

#include "Platform/Drawing/UIImage.h"
#include "Platform/Geometry/Geometry.h"
#include "Platform/Geometry/UIColor.h"

namespace qv {

struct SpriteTexture;

/// One sprite: a picture, where it goes, how opaque it is and what it is tinted with.
///
/// `trans` moves it in sprite space: origin at the frame's centre, x −1..1 across the frame's width, y in the
/// same unit and up, angles anticlockwise. Untransformed, a sprite spans x −1..1 with its picture's own
/// aspect.
struct SpiritParam {
    /// Made once and shared by all sprites that show the picture.
    using Texture = std::shared_ptr<const SpriteTexture>;

    CGAffineTransform trans;           ///< in sprite space
    float alpha = 1;                   ///< 0..1
    std::optional<UIColor> tintColor;  ///< multiplies the picture's colour and alpha; may exceed 1
    Texture texture;                   ///< nil draws nothing

    /// A picture as a sprite's texture; nil when it is nil. `name` appears in listings of the image graph.
    static Texture spiritTextureWithImage(const UIImage& image, std::string name = {});

    /// A sprite from what is given; the rest is opaque and without a tint.
    static SpiritParam paramWithTrans(const CGAffineTransform& trans, Texture texture);
    static SpiritParam paramWithTrans(const CGAffineTransform& trans, float alpha, Texture texture);
    static SpiritParam paramWithTrans(const CGAffineTransform& trans, const UIColor& tintColor,
                                      Texture texture);
    static SpiritParam paramWithTrans(const CGAffineTransform& trans, float alpha, const UIColor& tintColor,
                                      Texture texture);
};

}  // namespace qv
