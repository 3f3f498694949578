#include "Platform/Media/PixelBuffer.h"

#include <cstdlib>
#include <mutex>
#include <vector>

#include "Platform/Media/Bitmap.h"

namespace qv {
namespace {

/// Blocks of frames that are no longer used, for the next frames of the same size: fresh memory from the
/// system costs more page faults per frame than converting the frame takes.
class BlockPool {
  public:
    ~BlockPool() {
        for (const Block& block : free_) std::free(block.memory);
    }

    std::shared_ptr<const void> take(const std::shared_ptr<BlockPool>& self, std::size_t size) {
        void* memory = nullptr;
        {
            std::lock_guard lock(mutex_);
            for (std::size_t i = free_.size(); i-- > 0 && !memory;) {
                if (free_[i].size != size) continue;
                memory = free_[i].memory;
                free_.erase(free_.begin() + std::ptrdiff_t(i));
                bytes_ -= size;
            }
        }
        if (!memory) memory = std::aligned_alloc(kAlignment, size);
        if (!memory) return nullptr;
        return {memory, [self, size](const void* block) { self->give(const_cast<void*>(block), size); }};
    }

    static constexpr std::size_t kAlignment = 64;

  private:
    static constexpr std::size_t kBudget = std::size_t(96) << 20;
    struct Block {
        void* memory;
        std::size_t size;
    };

    void give(void* memory, std::size_t size) {
        std::lock_guard lock(mutex_);
        free_.push_back({memory, size});
        bytes_ += size;
        while (bytes_ > kBudget) {
            bytes_ -= free_.front().size;
            std::free(free_.front().memory);
            free_.erase(free_.begin());
        }
    }

    std::mutex mutex_;
    std::vector<Block> free_;
    std::size_t bytes_ = 0;
};

const std::shared_ptr<BlockPool>& blockPool() {
    static const auto pool = std::make_shared<BlockPool>();
    return pool;
}

struct FormatTraits {
    int planes;
    int chromaShiftX, chromaShiftY;
    int bytes;
    int bits;
    bool yuv;
};

FormatTraits traitsOf(PixelFormat format) {
    switch (format) {
        case PixelFormat::rgba8:
            return {1, 0, 0, 4, 8, false};
        case PixelFormat::gray8:
            return {1, 0, 0, 1, 8, false};
        case PixelFormat::i420:
            return {3, 1, 1, 1, 8, true};
        case PixelFormat::i422:
            return {3, 1, 0, 1, 8, true};
        case PixelFormat::i444:
            return {3, 0, 0, 1, 8, true};
        case PixelFormat::i420Alpha:
            return {4, 1, 1, 1, 8, true};
        case PixelFormat::nv12:
            return {2, 1, 1, 1, 8, true};
        case PixelFormat::i420Bits10:
            return {3, 1, 1, 2, 10, true};
        case PixelFormat::i422Bits10:
            return {3, 1, 0, 2, 10, true};
        case PixelFormat::i444Bits10:
            return {3, 0, 0, 2, 10, true};
    }
    return {};
}

bool sizeIsValid(int width, int height) {
    return width >= 1 && height >= 1 && width <= kMaximumImageSide && height <= kMaximumImageSide;
}

}  // namespace

int PixelBuffer::planeCount(PixelFormat format) {
    return traitsOf(format).planes;
}
int PixelBuffer::bitDepth(PixelFormat format) {
    return traitsOf(format).bits;
}
bool PixelBuffer::isYUV(PixelFormat format) {
    return traitsOf(format).yuv;
}

PlaneLayout PixelBuffer::planeLayout(PixelFormat format, int plane, int width, int height) {
    const FormatTraits traits = traitsOf(format);
    const bool chroma = plane == 1 || plane == 2;
    if (!chroma) return {width, height, traits.bytes};
    const int roundX = (1 << traits.chromaShiftX) - 1, roundY = (1 << traits.chromaShiftY) - 1;
    const int channels = format == PixelFormat::nv12 ? 2 : 1;
    return {(width + roundX) >> traits.chromaShiftX, (height + roundY) >> traits.chromaShiftY,
            traits.bytes * channels};
}

PixelBuffer PixelBuffer::create(PixelFormat format, int width, int height, ColorDescription color) {
    if (!sizeIsValid(width, height)) return {};
    constexpr std::size_t alignment = BlockPool::kAlignment;
    std::array<Plane, 4> planes{};
    std::array<std::size_t, 4> offsets{};
    std::size_t size = 0;
    for (int i = 0; i < planeCount(format); ++i) {
        const PlaneLayout layout = planeLayout(format, i, width, height);
        const std::size_t used = std::size_t(layout.width) * std::size_t(layout.bytesPerSample);
        planes[std::size_t(i)].rowBytes = (used + alignment - 1) / alignment * alignment;
        offsets[std::size_t(i)] = size;
        size += planes[std::size_t(i)].rowBytes * std::size_t(layout.height);
    }
    std::shared_ptr<const void> owner = blockPool()->take(blockPool(), size);
    if (!owner) return {};
    auto* base = static_cast<std::uint8_t*>(const_cast<void*>(owner.get()));
    for (int i = 0; i < planeCount(format); ++i) planes[std::size_t(i)].data = base + offsets[std::size_t(i)];
    return wrap(format, width, height, color, planes, std::move(owner));
}

PixelBuffer PixelBuffer::wrap(PixelFormat format, int width, int height, ColorDescription color,
                              const std::array<Plane, 4>& planes, std::shared_ptr<const void> owner) {
    if (!sizeIsValid(width, height)) return {};
    PixelBuffer buffer;
    buffer.format_ = format;
    buffer.width_ = width;
    buffer.height_ = height;
    buffer.color_ = color;
    buffer.planes_ = planes;
    buffer.owner_ = std::move(owner);
    return buffer;
}

YUVCoefficients yuvCoefficients(const ColorDescription& color, int bitDepth) {
    // Luma weights: BT.601-7 2.5.1, BT.709-6 3.2, BT.2020-2 table 4.
    double kr = 0.2126, kb = 0.0722;
    if (color.matrix == ColorMatrix::bt601) kr = 0.299, kb = 0.114;
    if (color.matrix == ColorMatrix::bt2020) kr = 0.2627, kb = 0.0593;
    const double kg = 1.0 - kr - kb;

    const double step = double(1 << (bitDepth - 8));
    const double fullCode = bitDepth == 8 ? 255.0 : 65535.0;
    const double maximum = double((1 << bitDepth) - 1);
    const double lumaOffset = color.fullRange ? 0.0 : 16.0 * step / fullCode;
    const double chromaOffset = 128.0 * step / fullCode;
    // Stored units per unit of Y', and per unit of Cb or Cr, which span -0.5..0.5.
    const double lumaSpan = (color.fullRange ? maximum : 219.0 * step) / fullCode;
    const double chromaSpan = (color.fullRange ? maximum : 224.0 * step) / fullCode;

    const double redFromCr = 2.0 * (1.0 - kr), blueFromCb = 2.0 * (1.0 - kb);
    const double toRGB[9] = {1.0, 0.0,        redFromCr, 1.0, -kb * blueFromCb / kg, -kr * redFromCr / kg,
                             1.0, blueFromCb, 0.0};
    const double fromRGB[9] = {kr,
                               kg,
                               kb,
                               -kr / blueFromCb,
                               -kg / blueFromCb,
                               (1.0 - kb) / blueFromCb,
                               (1.0 - kr) / redFromCr,
                               -kg / redFromCr,
                               -kb / redFromCr};

    YUVCoefficients result;
    result.offset = {float(lumaOffset), float(chromaOffset), float(chromaOffset)};
    for (std::size_t row = 0; row < 3; ++row) {
        for (std::size_t column = 0; column < 3; ++column) {
            result.toRGB[row * 3 + column] =
                float(toRGB[row * 3 + column] / (column == 0 ? lumaSpan : chromaSpan));
            result.fromRGB[row * 3 + column] =
                float(fromRGB[row * 3 + column] * (row == 0 ? lumaSpan : chromaSpan));
        }
    }
    return result;
}

}  // namespace qv
