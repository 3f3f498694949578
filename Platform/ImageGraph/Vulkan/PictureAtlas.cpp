#include "Platform/ImageGraph/Vulkan/PictureAtlas.h"

#include <algorithm>
#include <cstring>

namespace qv {

namespace {

constexpr int kPageSide = 2048;
constexpr std::size_t kMaximumPages = 8;

void barrier(VkCommandBuffer commands, VkImage image, VkImageLayout from, VkImageLayout to,
             VkPipelineStageFlags before, VkAccessFlags written, VkPipelineStageFlags after,
             VkAccessFlags read) {
    VkImageMemoryBarrier info{VK_STRUCTURE_TYPE_IMAGE_MEMORY_BARRIER};
    info.srcAccessMask = written;
    info.dstAccessMask = read;
    info.oldLayout = from;
    info.newLayout = to;
    info.srcQueueFamilyIndex = info.dstQueueFamilyIndex = VK_QUEUE_FAMILY_IGNORED;
    info.image = image;
    info.subresourceRange = {VK_IMAGE_ASPECT_COLOR_BIT, 0, 1, 0, 1};
    vkCmdPipelineBarrier(commands, before, after, 0, 0, nullptr, 0, nullptr, 1, &info);
}

/// Makes a page ready to be copied to; a new one becomes transparent.
void beginWriting(Texture& page, VkCommandBuffer commands, Frame& frame) {
    const bool fresh = page.layout == VK_IMAGE_LAYOUT_UNDEFINED;
    // A new page may have been another frame's target.
    barrier(commands, page.image(), page.layout, VK_IMAGE_LAYOUT_TRANSFER_DST_OPTIMAL,
            VK_PIPELINE_STAGE_FRAGMENT_SHADER_BIT | VK_PIPELINE_STAGE_COLOR_ATTACHMENT_OUTPUT_BIT |
                VK_PIPELINE_STAGE_TRANSFER_BIT,
            VK_ACCESS_COLOR_ATTACHMENT_WRITE_BIT | VK_ACCESS_TRANSFER_WRITE_BIT,
            VK_PIPELINE_STAGE_TRANSFER_BIT, VK_ACCESS_TRANSFER_WRITE_BIT);
    frame.setLayout(page, VK_IMAGE_LAYOUT_TRANSFER_DST_OPTIMAL);
    if (!fresh) return;
    const VkClearColorValue clear{};
    const VkImageSubresourceRange all{VK_IMAGE_ASPECT_COLOR_BIT, 0, 1, 0, 1};
    vkCmdClearColorImage(commands, page.image(), page.layout, &clear, 1, &all);
    barrier(commands, page.image(), page.layout, page.layout, VK_PIPELINE_STAGE_TRANSFER_BIT,
            VK_ACCESS_TRANSFER_WRITE_BIT, VK_PIPELINE_STAGE_TRANSFER_BIT, VK_ACCESS_TRANSFER_WRITE_BIT);
}

void endWriting(Texture& page, VkCommandBuffer commands, Frame& frame) {
    barrier(commands, page.image(), page.layout, VK_IMAGE_LAYOUT_SHADER_READ_ONLY_OPTIMAL,
            VK_PIPELINE_STAGE_TRANSFER_BIT, VK_ACCESS_TRANSFER_WRITE_BIT,
            VK_PIPELINE_STAGE_FRAGMENT_SHADER_BIT, VK_ACCESS_SHADER_READ_BIT);
    frame.setLayout(page, VK_IMAGE_LAYOUT_SHADER_READ_ONLY_OPTIMAL);
}

}  // namespace

AtlasPicture::Place PictureAtlas::reserve(int width, int height) {
    if (!pages_.empty()) {
        Page& page = pages_.back();
        const TextureKey& size = page.texture->key();
        if (page.shelfX + width > size.width) {
            page.shelfY += page.shelfHeight;
            page.shelfX = page.shelfHeight = 0;
        }
        if (page.shelfX + width <= size.width && page.shelfY + height <= size.height) {
            const AtlasPicture::Place place{page.shelfX, page.shelfY};
            page.shelfX += width;
            page.shelfHeight = std::max(page.shelfHeight, height);
            return place;
        }
    }
    if (pages_.size() == kMaximumPages) {
        // Start over; what this frame and those in flight still show keeps its page alive.
        pages_.clear();
        clear();
    }
    const TextureKey key{std::max(kPageSide, width), std::max(kPageSide, height), TextureFormat::rgba8,
                         false};
    pages_.push_back({pool_->acquire(key), width, 0, height});
    pages_.back().texture->layout = VK_IMAGE_LAYOUT_UNDEFINED;
    return {0, 0};
}

void PictureAtlas::begin(VkCommandBuffer commands, Frame& frame) noexcept {
    commands_ = commands;
    frame_ = &frame;
}

void PictureAtlas::abandon() noexcept {
    if (!std::exchange(hasUploads_, false)) return;
    pages_.clear();
    clear();
}

void PictureAtlas::place(const AtlasPicture& picture, Entry& entry) {
    std::size_t bytes = 0;
    for (const AtlasPicture::Level& level : picture.levels) bytes += level.bytes.size();
    hasUploads_ = true;
    const AtlasPicture::Place cell = reserve(picture.cellWidth, picture.cellHeight);
    const std::shared_ptr<Texture>& page = pages_.back().texture;
    entry.page = page;
    entry.pageWidth = page->key().width;
    entry.pageHeight = page->key().height;

    const auto staging = std::make_shared<HostBuffer>(resources_, bytes, VK_BUFFER_USAGE_TRANSFER_SRC_BIT);
    std::vector<VkBufferImageCopy> copies;
    VkDeviceSize offset = 0;
    for (std::size_t i = 0; i < picture.levels.size(); ++i) {
        const AtlasPicture::Level& level = picture.levels[i];
        entry.levels[i].x += cell.x;
        entry.levels[i].y += cell.y;
        std::memcpy(staging->data() + offset, level.bytes.data(), level.bytes.size());
        VkBufferImageCopy copy{};
        copy.bufferOffset = offset;
        copy.imageSubresource = {VK_IMAGE_ASPECT_COLOR_BIT, 0, 0, 1};
        copy.imageOffset = {entry.levels[i].x, entry.levels[i].y, 0};
        copy.imageExtent = {std::uint32_t(level.width), std::uint32_t(level.height), 1};
        copies.push_back(copy);
        offset += level.bytes.size();
    }
    frame_->keepAlive.push_back(staging);
    beginWriting(*page, commands_, *frame_);
    vkCmdCopyBufferToImage(commands_, staging->handle(), page->image(), page->layout,
                           std::uint32_t(copies.size()), copies.data());
    endWriting(*page, commands_, *frame_);
}

}  // namespace qv
