#pragma once

#include <array>
#include <cstdint>
#include <memory>

#include "Platform/ImageGraph/Native/NativeKernel.h"
#include "Platform/ImageGraph/Planner.h"
#include "Platform/ImageGraph/Private/ReusePool.h"

namespace qv {

/// A texture in memory, padded as kernels want it.
class NativeTexture {
  public:
    /// Throws std::bad_alloc.
    NativeTexture(int width, int height, TextureFormat format);
    ~NativeTexture();
    NativeTexture(const NativeTexture&) = delete;
    NativeTexture& operator=(const NativeTexture&) = delete;

    const NativeImage& image() const { return image_; }
    TextureFormat format() const { return format_; }
    /// With the padding.
    std::uint64_t bytes() const { return bytes_; }
    bool isLike(int width, int height, TextureFormat format) const {
        return image_.width == width && image_.height == height && format_ == format;
    }

    std::uint64_t lastUse = 0;  ///< serial of the last render that uses it

  private:
    NativeImage image_;
    TextureFormat format_;
    std::uint64_t bytes_;
};

/// Fills rows [firstRow, endRow) with one colour.
void fillRows(const NativeImage& image, TextureFormat format, const std::array<float, 4>& color, int firstRow,
              int endRow);

/// Textures for reuse, by size and format.
class NativeTexturePool : public ReusePool<NativeTexture> {
  public:
    using ReusePool::ReusePool;

    /// A texture whose old content is of no interest. Throws std::bad_alloc.
    std::shared_ptr<NativeTexture> acquire(int width, int height, TextureFormat format) {
        return ReusePool::acquire(
            [&](const NativeTexture& idle) { return idle.isLike(width, height, format); },
            [&] { return std::make_unique<NativeTexture>(width, height, format); });
    }
};

}  // namespace qv
