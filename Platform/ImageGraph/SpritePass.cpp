#include "Platform/ImageGraph/SpritePass.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>

#include "Platform/ImageGraph/Private/OverlayInstances.h"
#include "Platform/ImageGraph/Private/PictureStore.h"

namespace qv {

namespace {

using Instance = SpriteInstanceData;

/// The part, in sprite space, of a frame `frameAspect` times as high as wide that a sprite lies in.
CGRect boxInFrame(const SpriteInstance& sprite, double frameAspect) {
    if (!sprite.texture || !sprite.texture->bitmap || !(sprite.alpha * sprite.tint.alpha > 0)) return {};
    const CGAffineTransform& t = sprite.transform;
    if (!std::isfinite(t.a + t.b + t.c + t.d + t.tx + t.ty)) return {};
    const double aspect = double(sprite.texture->bitmap.height) / sprite.texture->bitmap.width;
    const CGRect box = CGRectApplyAffineTransform(CGRectMake(-1, -aspect, 2, 2 * aspect), t);
    return CGRectIntersection(box, CGRectMake(-1, -frameAspect, 2, 2 * frameAspect));
}

/// Whether a sprite may colour a pixel of the frame.
bool isVisible(const SpriteInstance& sprite, double frameAspect) {
    return !CGRectIsEmpty(boxInFrame(sprite, frameAspect));
}

/// The outline as it is drawn: wider by the pixels of the frame and of the picture that its edge is spread
/// over, but not beyond the soft edge of the sprite itself.
void setOutline(Instance& v, const PictureOutline& outline, double levelWidth, double levelHeight) {
    const float edgeX = 1 / v.halfSides[0], edgeY = 1 / v.halfSides[1];
    const float padX = edgeX + float(3 / levelWidth), padY = edgeY + float(3 / levelHeight);
    v.sides[0] = std::min(outline.left + padX, 1 + edgeX);
    v.sides[1] = std::min(outline.right + padX, 1 + edgeX);
    v.sides[2] = std::min(outline.bottom + padY, 1 + edgeY);
    v.sides[3] = std::min(outline.top + padY, 1 + edgeY);
    v.corners[0] = std::min(outline.leftBottom + padX + padY, v.sides[0] + v.sides[2]);
    v.corners[1] = std::min(outline.rightBottom + padX + padY, v.sides[1] + v.sides[2]);
    v.corners[2] = std::min(outline.leftTop + padX + padY, v.sides[0] + v.sides[3]);
    v.corners[3] = std::min(outline.rightTop + padX + padY, v.sides[1] + v.sides[3]);
}

}  // namespace

const OverlayKind& SpritePass::kind() const {
    static const OverlayKind kind = [] {
        OverlayKind made;
        if (const auto& library = ShaderLibrary::platform()) {
            made.vertexStage = library->function("sprite.vert");
            made.fragmentStage = library->function("sprite.frag");
        }
        made.style = {DrawTopology::triangleStrip, DrawBlend::sourceOver, int(sizeof(Instance) / 16), 1};
        made.vertices = 8;
        made.textures = 1;
        return made;
    }();
    return kind;
}

bool SpritePass::isVisible(int width, int height) const {
    const double aspect = double(height) / width;
    return std::ranges::any_of(sprites, [&](const auto& sprite) { return qv::isVisible(sprite, aspect); });
}

std::vector<PixelRect> SpritePass::bounds(int width, int height) const {
    constexpr double kEdge = 2;  // pixels that the soft edge takes at most
    std::vector<PixelRect> result;
    const double halfWidth = width / 2.0, aspect = double(height) / width;
    for (const SpriteInstance& sprite : sprites) {
        const CGRect box = boxInFrame(sprite, aspect);
        if (CGRectIsEmpty(box)) continue;
        const auto pixel = [](double place, int side) { return int(std::clamp(place, 0.0, double(side))); };
        const int left = pixel(std::floor((box.minX() + 1) * halfWidth - kEdge), width);
        const int right = pixel(std::ceil((box.maxX() + 1) * halfWidth + kEdge), width);
        const int top = pixel(std::floor((aspect - box.maxY()) * halfWidth - kEdge), height);
        const int bottom = pixel(std::ceil((aspect - box.minY()) * halfWidth + kEdge), height);
        result.push_back({left, top, right - left, bottom - top});
    }
    return result;
}

OverlayLayout SpritePass::layOut(int width, int height, PictureStore& pictures) const {
    OverlayLayout result;
    std::uint32_t count = 0;
    const double ratio = double(width) / double(height);
    for (const SpriteInstance& sprite : sprites) {
        if (!qv::isVisible(sprite, 1 / ratio)) continue;
        const CGAffineTransform& t = sprite.transform;
        const PictureStore::Entry& source = pictures.entry(sprite.texture->bitmap);
        if (source.outline.isEmpty()) continue;

        const double aspect = double(source.height) / double(source.width);
        Instance v{};
        v.center[0] = float(t.tx);
        v.center[1] = float(-t.ty * ratio);
        v.axisX[0] = float(t.a);
        v.axisX[1] = float(-t.b * ratio);
        v.axisY[0] = float(t.c * aspect);
        v.axisY[1] = float(-t.d * aspect * ratio);
        // The axes in pixels of the frame: half the sprite's sides.
        const double halfX = std::hypot(t.a, t.b) * width * 0.5;
        const double halfY = std::hypot(t.c, t.d) * aspect * width * 0.5;
        if (!(halfX > 0.01) || !(halfY > 0.01)) continue;
        v.halfSides[0] = float(halfX);
        v.halfSides[1] = float(halfY);

        const double shrink = std::min(source.width / (2 * halfX), source.height / (2 * halfY));
        const double level =
            std::clamp(std::round(std::log2(std::max(shrink, 1.0))), 0.0, AtlasPicture::kLevels - 1.0);
        const AtlasPicture::Place& place = source.levels[std::size_t(level)];
        const double levelWidth = source.width / std::exp2(level);
        const double levelHeight = source.height / std::exp2(level);
        v.place[0] = float(place.x) / float(source.pageWidth);
        v.place[1] = float(place.y) / float(source.pageHeight);
        v.place[2] = float(levelWidth / source.pageWidth);
        v.place[3] = float(levelHeight / source.pageHeight);
        v.halfTexel[0] = 0.5f / float(source.pageWidth);
        v.halfTexel[1] = 0.5f / float(source.pageHeight);
        setOutline(v, source.outline, levelWidth, levelHeight);

        const float alpha = sprite.alpha * sprite.tint.alpha;
        v.factor[0] = sprite.tint.red * alpha;
        v.factor[1] = sprite.tint.green * alpha;
        v.factor[2] = sprite.tint.blue * alpha;
        v.factor[3] = alpha;

        if (result.draws.empty() || result.draws.back().textures.front() != source.page)
            result.draws.push_back({{source.page}, count, 0});
        const auto words = std::bit_cast<std::array<float, sizeof(v) / sizeof(float)>>(v);
        result.instances.insert(result.instances.end(), words.begin(), words.end());
        ++result.draws.back().count;
        ++count;
    }
    return result;
}

}  // namespace qv
