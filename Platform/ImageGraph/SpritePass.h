#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Platform/Geometry/Geometry.h"
#include "Platform/ImageGraph/MTIImage.h"
#include "Platform/ImageGraph/PassOverlay.h"
#include "Platform/Media/Bitmap.h"

namespace qv {

/// A texture atlas entry's source: a sprite's picture, shared by all sprites that show it.
struct SpriteTexture {
    Bitmap bitmap;     ///< premultiplied
    std::string name;  ///< of the asset it was loaded from, or empty; for listings
};

/// One textured quad of a sprite pass, in sprite space: origin at the centre, x −1..1 across the width, y in
/// half-widths, up. Before `transform` the quad spans x −1..1 with its texture's aspect.
struct SpriteInstance {
    CGAffineTransform transform;                   ///< in sprite space
    float alpha = 1;                               ///< 0..1
    MTIColor tint{1, 1, 1, 1};                     ///< multiplies the texture's colour; not premultiplied
    std::shared_ptr<const SpriteTexture> texture;  ///< nil draws nothing
};

/// Sprites drawn over the input in list order; no pass when none is visible.
struct SpritePass final : PassOverlay {
    /// Draws `list`, the lowest first.
    explicit SpritePass(std::vector<SpriteInstance> list = {}) : sprites(std::move(list)) {}

    const OverlayKind& kind() const override;
    bool isVisible(int width, int height) const override;
    std::vector<PixelRect> bounds(int width, int height) const override;
    OverlayLayout layOut(int width, int height, PictureStore& pictures) const override;

    std::vector<SpriteInstance> sprites;  ///< the lowest first
};

}  // namespace qv
