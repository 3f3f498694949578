#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "Platform/ImageGraph/Private/PictureStore.h"
#include "Platform/ImageGraph/Vulkan/Frame.h"
#include "Platform/ImageGraph/Vulkan/Texture.h"

namespace qv {

/// Keeps the pictures that overlays show together on large pages, so that instances with any number of
/// pictures are one draw. Each lies there in several sizes side by side, of which an instance shows the
/// nearest: a page with mip levels would take three times as long to read on a processor. A picture is put on
/// a page once and stays. Used by one thread at a time.
class PictureAtlas final : public PictureStore {
  public:
    PictureAtlas(DeviceResources& resources, std::shared_ptr<TexturePool> pool)
        : resources_(resources), pool_(std::move(pool)) {}

    /// From now on uploads are recorded into `commands` of `frame`, which keeps their staging memory alive;
    /// `keep` or `abandon` follows.
    void begin(VkCommandBuffer commands, Frame& frame) noexcept;
    /// The frame was submitted: what it uploaded is there for the next ones.
    void keep() noexcept { hasUploads_ = false; }
    /// The frame was given up; if it uploaded anything, the atlas begins anew.
    void abandon() noexcept;

  protected:
    /// Throws VulkanError.
    void place(const AtlasPicture& picture, Entry& entry) override;

  private:
    struct Page {
        std::shared_ptr<Texture> texture;
        int shelfX = 0, shelfY = 0, shelfHeight = 0;
    };

    /// Reserves a rectangle of pixels on the last page, or on a new one.
    AtlasPicture::Place reserve(int width, int height);

    DeviceResources& resources_;
    std::shared_ptr<TexturePool> pool_;
    VkCommandBuffer commands_ = VK_NULL_HANDLE;
    Frame* frame_ = nullptr;
    std::vector<Page> pages_;
    bool hasUploads_ = false;  ///< recorded, but not known to be submitted
};

}  // namespace qv
