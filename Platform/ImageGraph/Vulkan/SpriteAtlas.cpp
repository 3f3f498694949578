#include "Platform/ImageGraph/Vulkan/SpriteAtlas.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace qv {

namespace {

constexpr int kPageSide = 2048;
constexpr int kMipLevels = 5;
// Transparent surroundings of each picture: at least one texel of them is left at the smallest mip level.
constexpr int kSurround = 1 << (kMipLevels - 1);
constexpr int kLargestSide = kPageSide - 2 * kSurround;
constexpr std::size_t kMaximumPages = 8;

struct Pixels {
    int width, height;
    std::vector<std::uint8_t> bytes;
};

/// Half the size: the mean of two by two premultiplied pixels, the last row or column again where the size is
/// odd.
Pixels halved(const Pixels& from) {
    Pixels to{std::max(from.width / 2, 1), std::max(from.height / 2, 1), {}};
    to.bytes.resize(std::size_t(to.width) * std::size_t(to.height) * 4);
    for (int y = 0; y < to.height; ++y) {
        const std::uint8_t* upper = from.bytes.data() + std::size_t(2 * y) * std::size_t(from.width) * 4;
        const std::uint8_t* lower = from.height > 1 ? upper + std::size_t(from.width) * 4 : upper;
        std::uint8_t* out = to.bytes.data() + std::size_t(y) * std::size_t(to.width) * 4;
        for (int x = 0; x < to.width; ++x) {
            const int left = x * 8, right = from.width > 1 ? left + 4 : left;
            for (int c = 0; c < 4; ++c) {
                out[x * 4 + c] = std::uint8_t(
                    (upper[left + c] + upper[right + c] + lower[left + c] + lower[right + c] + 2) / 4);
            }
        }
    }
    return to;
}

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
    info.subresourceRange = {VK_IMAGE_ASPECT_COLOR_BIT, 0, VK_REMAINING_MIP_LEVELS, 0, 1};
    vkCmdPipelineBarrier(commands, before, after, 0, 0, nullptr, 0, nullptr, 1, &info);
}

}  // namespace

SpriteAtlas::Page& SpriteAtlas::place(int cellWidth, int cellHeight, int& x, int& y) {
    if (!pages_.empty()) {
        Page& page = pages_.back();
        if (page.shelfX + cellWidth > kPageSide) {
            page.shelfY += page.shelfHeight;
            page.shelfX = page.shelfHeight = 0;
        }
        if (page.shelfY + cellHeight <= kPageSide) {
            x = page.shelfX;
            y = page.shelfY;
            page.shelfX += cellWidth;
            page.shelfHeight = std::max(page.shelfHeight, cellHeight);
            return page;
        }
    }
    if (pages_.size() == kMaximumPages) {
        // Start over; what this frame and those in flight still show keeps its page alive.
        pages_.clear();
        entries_.clear();
    }
    pages_.push_back({pool_->acquire({kPageSide, kPageSide, TextureFormat::rgba8, false, kMipLevels}),
                      cellWidth, 0, cellHeight});
    pages_.back().texture->layout = VK_IMAGE_LAYOUT_UNDEFINED;
    x = y = 0;
    return pages_.back();
}

const SpriteAtlas::Entry& SpriteAtlas::entry(const Bitmap& bitmap, VkCommandBuffer commands,
                                             std::vector<std::shared_ptr<void>>& keepAlive) {
    const void* key = bitmap.pixels.get();
    if (const auto found = entries_.find(key); found != entries_.end()) {
        // The address of freed pixels may come back as another picture's.
        if (found->second.pixels.lock() == bitmap.pixels) return found->second;
        entries_.erase(found);
    }

    Pixels picture{bitmap.width, bitmap.height, *bitmap.pixels};
    while (picture.width > kLargestSide || picture.height > kLargestSide) picture = halved(picture);
    const auto cellSide = [](int side) { return (side + 3 * kSurround - 1) / kSurround * kSurround; };
    Pixels cell{cellSide(picture.width), cellSide(picture.height), {}};
    cell.bytes.resize(std::size_t(cell.width) * std::size_t(cell.height) * 4);
    for (int y = 0; y < picture.height; ++y) {
        std::memcpy(
            cell.bytes.data() + (std::size_t(y + kSurround) * std::size_t(cell.width) + kSurround) * 4,
            picture.bytes.data() + std::size_t(y) * std::size_t(picture.width) * 4,
            std::size_t(picture.width) * 4);
    }

    int x = 0, y = 0;
    Texture& page = *place(cell.width, cell.height, x, y).texture;
    const bool fresh = page.layout == VK_IMAGE_LAYOUT_UNDEFINED;
    barrier(commands, page.image(), page.layout, VK_IMAGE_LAYOUT_TRANSFER_DST_OPTIMAL,
            VK_PIPELINE_STAGE_FRAGMENT_SHADER_BIT | VK_PIPELINE_STAGE_TRANSFER_BIT,
            VK_ACCESS_TRANSFER_WRITE_BIT, VK_PIPELINE_STAGE_TRANSFER_BIT, VK_ACCESS_TRANSFER_WRITE_BIT);
    if (fresh) {
        const VkClearColorValue clear{};
        const VkImageSubresourceRange all{VK_IMAGE_ASPECT_COLOR_BIT, 0, kMipLevels, 0, 1};
        vkCmdClearColorImage(commands, page.image(), VK_IMAGE_LAYOUT_TRANSFER_DST_OPTIMAL, &clear, 1, &all);
        barrier(commands, page.image(), VK_IMAGE_LAYOUT_TRANSFER_DST_OPTIMAL,
                VK_IMAGE_LAYOUT_TRANSFER_DST_OPTIMAL, VK_PIPELINE_STAGE_TRANSFER_BIT,
                VK_ACCESS_TRANSFER_WRITE_BIT, VK_PIPELINE_STAGE_TRANSFER_BIT, VK_ACCESS_TRANSFER_WRITE_BIT);
    }
    const auto staging = std::make_shared<HostBuffer>(resources_, cell.bytes.size() * 4 / 3 + 1024,
                                                      VK_BUFFER_USAGE_TRANSFER_SRC_BIT);
    std::vector<VkBufferImageCopy> copies;
    VkDeviceSize offset = 0;
    Pixels level = cell;
    for (int i = 0; i < kMipLevels; ++i) {
        std::memcpy(staging->data() + offset, level.bytes.data(), level.bytes.size());
        VkBufferImageCopy copy{};
        copy.bufferOffset = offset;
        copy.imageSubresource = {VK_IMAGE_ASPECT_COLOR_BIT, std::uint32_t(i), 0, 1};
        copy.imageOffset = {x >> i, y >> i, 0};
        copy.imageExtent = {std::uint32_t(level.width), std::uint32_t(level.height), 1};
        copies.push_back(copy);
        offset += level.bytes.size();
        if (i + 1 < kMipLevels) level = halved(level);
    }
    vkCmdCopyBufferToImage(commands, staging->handle(), page.image(), VK_IMAGE_LAYOUT_TRANSFER_DST_OPTIMAL,
                           std::uint32_t(copies.size()), copies.data());
    barrier(commands, page.image(), VK_IMAGE_LAYOUT_TRANSFER_DST_OPTIMAL,
            VK_IMAGE_LAYOUT_SHADER_READ_ONLY_OPTIMAL, VK_PIPELINE_STAGE_TRANSFER_BIT,
            VK_ACCESS_TRANSFER_WRITE_BIT, VK_PIPELINE_STAGE_FRAGMENT_SHADER_BIT, VK_ACCESS_SHADER_READ_BIT);
    page.layout = VK_IMAGE_LAYOUT_SHADER_READ_ONLY_OPTIMAL;
    keepAlive.push_back(staging);
    return entries_
        .emplace(key, Entry{bitmap.pixels, pages_.back().texture, x + kSurround, y + kSurround, picture.width,
                            picture.height})
        .first->second;
}

std::vector<SpriteRun> SpriteAtlas::layOut(std::span<const SpriteInstance> sprites, int width, int height,
                                           std::vector<SpriteVertexData>& vertices, VkCommandBuffer commands,
                                           std::vector<std::shared_ptr<void>>& keepAlive) {
    std::vector<SpriteRun> runs;
    const double ratio = double(width) / double(height);
    for (const SpriteInstance& sprite : sprites) {
        if (!isVisible(sprite, 1 / ratio)) continue;
        const CGAffineTransform& t = sprite.transform;
        const float alpha = sprite.alpha * sprite.tint.alpha;
        const Entry& source = entry(sprite.texture->bitmap, commands, keepAlive);

        const double aspect = double(source.height) / double(source.width);
        SpriteVertexData v{};
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
        const double shrink = std::min(source.width / (2 * halfX), source.height / (2 * halfY));
        v.mipLevel = float(std::clamp(std::log2(std::max(shrink, 1e-3)), 0.0, double(kMipLevels - 1)));
        v.halfSides[0] = float(halfX);
        v.halfSides[1] = float(halfY);
        v.texel[0] = std::exp2(v.mipLevel) / float(source.width);
        v.texel[1] = std::exp2(v.mipLevel) / float(source.height);
        v.place[0] = float(source.x) / kPageSide;
        v.place[1] = float(source.y) / kPageSide;
        v.place[2] = float(source.width) / kPageSide;
        v.place[3] = float(source.height) / kPageSide;
        v.factor[0] = sprite.tint.red * alpha;
        v.factor[1] = sprite.tint.green * alpha;
        v.factor[2] = sprite.tint.blue * alpha;
        v.factor[3] = alpha;

        if (runs.empty() || runs.back().page != source.page) {
            runs.push_back({source.page, std::uint32_t(vertices.size()), 0});
        }
        vertices.push_back(v);
        ++runs.back().count;
    }
    return runs;
}

}  // namespace qv
