#pragma once

#include <cstdint>
#include <list>
#include <memory>
#include <span>
#include <unordered_map>
#include <vector>

#include "Platform/ImageGraph/ImageNode.h"
#include "Platform/ImageGraph/Vulkan/Texture.h"

namespace qv {

/// What the sprite vertex stage reads of one sprite; see sprite.vert.
struct SpriteVertexData {
    float center[2], axisX[2];
    float axisY[2], halfSides[2];
    float place[4];
    float factor[4];
    float mipLevel, texel[2], unused;
};

/// Sprites that lie on one atlas page and follow each other: one instanced draw.
struct SpriteRun {
    std::shared_ptr<Texture> page;
    std::uint32_t first, count;
};

/// Keeps the textures of sprites together on large pages with mip levels, so that a list of sprites with any
/// number of textures is one draw. A texture is put on a page once and stays. Used by one thread at a time.
class SpriteAtlas {
  public:
    SpriteAtlas(DeviceResources& resources, std::shared_ptr<TexturePool> pool)
        : resources_(resources), pool_(std::move(pool)) {}

    /// Fills `vertices` for the sprites of a frame of the given size and returns the draws; sprites without a
    /// texture and those that cannot be seen are left out. Uploads of new textures are recorded into
    /// `commands` and their staging memory is added to `keepAlive`.
    std::vector<SpriteRun> layOut(std::span<const SpriteInstance> sprites, int width, int height,
                                  std::vector<SpriteVertexData>& vertices, VkCommandBuffer commands,
                                  std::vector<std::shared_ptr<void>>& keepAlive);

  private:
    struct Page {
        std::shared_ptr<Texture> texture;
        int shelfX = 0, shelfY = 0, shelfHeight = 0;
    };
    struct Entry {
        std::weak_ptr<const std::vector<std::uint8_t>> pixels;
        std::shared_ptr<Texture> page;
        int x, y, width, height;  ///< of the picture on the page, without its surroundings
    };

    const Entry& entry(const Bitmap& bitmap, VkCommandBuffer commands,
                       std::vector<std::shared_ptr<void>>& keepAlive);
    Page& place(int cellWidth, int cellHeight, int& x, int& y);

    DeviceResources& resources_;
    std::shared_ptr<TexturePool> pool_;
    std::vector<Page> pages_;
    std::unordered_map<const void*, Entry> entries_;
};

}  // namespace qv
