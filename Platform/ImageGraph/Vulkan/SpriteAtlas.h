#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <unordered_map>
#include <vector>

#include "Platform/ImageGraph/ImageNode.h"
#include "Platform/ImageGraph/Vulkan/Frame.h"
#include "Platform/ImageGraph/Vulkan/SpritePicture.h"
#include "Platform/ImageGraph/Vulkan/Texture.h"

namespace qv {

/// What the sprite vertex stage reads of one sprite; see sprite.vert.
struct SpriteVertexData {
    float center[2], axisX[2];
    float axisY[2], halfSides[2];
    float place[4];
    float factor[4];
    float sides[4];
    float corners[4];
    float halfTexel[2], unused[2];
};
/// Vertices of the strip that draws one sprite.
inline constexpr std::uint32_t kSpriteVertices = 8;

/// Sprites that lie on one atlas page and follow each other: one instanced draw.
struct SpriteRun {
    std::shared_ptr<Texture> page;
    std::uint32_t first, count;
};

/// Keeps the textures of sprites together on large pages, so that a list of sprites with any number of
/// textures is one draw. Each texture lies there in several sizes side by side, of which a sprite shows the
/// nearest: a page with mip levels would take three times as long to read on a processor. A texture is put on
/// a page once and stays. Used by one thread at a time.
class SpriteAtlas {
  public:
    SpriteAtlas(DeviceResources& resources, std::shared_ptr<TexturePool> pool)
        : resources_(resources), pool_(std::move(pool)) {}

    /// Fills `vertices` for the sprites of a frame of the given size and returns the draws; sprites that
    /// cannot be seen are left out. Uploads of new textures are recorded into `commands` of `frame`, which
    /// keeps their staging memory alive; `keep` or `abandon` follows.
    std::vector<SpriteRun> layOut(std::span<const SpriteInstance> sprites, int width, int height,
                                  std::vector<SpriteVertexData>& vertices, VkCommandBuffer commands,
                                  Frame& frame);
    /// The frame was submitted: what it uploaded is there for the next ones.
    void keep() noexcept { hasUploads_ = false; }
    /// The frame was given up; if it uploaded anything, the atlas begins anew.
    void abandon() noexcept;

  private:
    struct Place {
        int x, y;  ///< of the first pixel on the page
    };
    struct Page {
        std::shared_ptr<Texture> texture;
        int shelfX = 0, shelfY = 0, shelfHeight = 0;
    };
    struct Entry {
        std::weak_ptr<const std::vector<std::uint8_t>> pixels;
        std::shared_ptr<Texture> page;
        int width, height;  ///< of the picture
        std::array<Place, SpritePicture::kLevels> levels;
        SpriteOutline outline;
    };

    const Entry& entry(const Bitmap& bitmap, VkCommandBuffer commands, Frame& frame);
    /// Reserves a rectangle of pixels on the last page, or on a new one.
    Place reserve(int width, int height);

    DeviceResources& resources_;
    std::shared_ptr<TexturePool> pool_;
    std::vector<Page> pages_;
    std::unordered_map<const void*, Entry> entries_;
    bool hasUploads_ = false;  ///< recorded, but not known to be submitted
};

}  // namespace qv
