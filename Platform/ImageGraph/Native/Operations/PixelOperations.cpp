#include "Platform/ImageGraph/Native/Operations/PixelOperations.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "Platform/ImageGraph/Native/Operations/RowBuffer.h"

namespace qv {

namespace {

/// One stage, whose rows depend on nothing but the input.
class RowOperation : public NativeOperation {
  public:
    int rows(int) const override { return height_; }

  protected:
    explicit RowOperation(int height) : height_(height) {}

  private:
    int height_;
};

class Crop final : public RowOperation {
  public:
    Crop(int bytes, int x, int y, int height) : RowOperation(height), bytes_(bytes), x_(x), y_(y) {}

    void draw(int, const NativeImage* inputs, const NativeImage& target, std::byte*, int firstRow,
              int endRow) const override {
        const NativeImage& input = inputs[0];
        // Of the target's columns, those that lie in the input.
        const std::int64_t first = std::clamp<std::int64_t>(-std::int64_t(x_), 0, target.width);
        const std::int64_t end =
            std::clamp<std::int64_t>(std::int64_t(input.width) - x_, first, target.width);
        for (int y = firstRow; y < endRow; ++y) {
            std::uint8_t* to = target.pixels + y * target.rowBytes;
            const std::int64_t row = std::int64_t(y) + y_;
            const bool isInside = row >= 0 && row < input.height && end > first;
            const std::int64_t filledFrom = isInside ? first : target.width;
            std::memset(to, 0, std::size_t(filledFrom * bytes_));
            if (!isInside) continue;
            std::memcpy(to + first * bytes_, input.pixels + row * input.rowBytes + (first + x_) * bytes_,
                        std::size_t((end - first) * bytes_));
            std::memset(to + end * bytes_, 0, std::size_t((target.width - end) * bytes_));
        }
    }

  private:
    int bytes_, x_, y_;
};

class PixelByPixel final : public RowOperation {
  public:
    using Function = decltype(RowFunctions::opaque);
    PixelByPixel(Function function, int height) : RowOperation(height), function_(function) {}

    void draw(int, const NativeImage* inputs, const NativeImage& target, std::byte*, int firstRow,
              int endRow) const override {
        for (int y = firstRow; y < endRow; ++y)
            function_(inputs[0].pixels + y * inputs[0].rowBytes, target.width,
                      target.pixels + y * target.rowBytes);
    }

  private:
    Function function_;
};

/// A place between two pixels.
struct Between {
    int first;
    int share;  ///< of the second, of 32767

    /// Where the middle of pixel `i` lies when `from` pixels are stretched to `to`.
    Between(int i, int from, int to) {
        const double place = (i + 0.5) * from / to - 0.5;
        first = int(std::floor(place));
        share = int(std::lround((place - first) * 32767));
    }
};

class Resize final : public RowOperation {
  public:
    Resize(int fromWidth, int fromHeight, int toWidth, int toHeight, NativeTarget instructions)
        : RowOperation(toHeight),
          functions_(rowFunctions(instructions)),
          fromWidth_(fromWidth),
          placement_(toWidth) {
        for (int x = 0; x < toWidth; ++x) {
            const Between place(x, fromWidth, toWidth);
            placement_.set(x, place.first, place.share);
        }
        for (int y = 0; y < toHeight; ++y) rows_.emplace_back(y, fromHeight, toHeight);
    }

    void draw(int, const NativeImage* inputs, const NativeImage& target, std::byte*, int firstRow,
              int endRow) const override {
        RowBuffer mixed(1, fromWidth_, 1);
        for (int y = firstRow; y < endRow; ++y) {
            const Between& place = rows_[std::size_t(y)];
            functions_.mixedBytes(rowOf(inputs[0], place.first), rowOf(inputs[0], place.first + 1),
                                  std::int16_t(place.share), fromWidth_ * 4, mixed.row());
            mixed.extend();
            functions_.between(mixed.row(), placement_.left.data(), placement_.weights.data(), target.width,
                               target.pixels + y * target.rowBytes);
        }
    }

  private:
    const RowFunctions& functions_;
    int fromWidth_;
    Placement placement_;
    std::vector<Between> rows_;
};

}  // namespace

std::unique_ptr<const NativeOperation> cropOperation(int bytes, int x, int y, int height) {
    return std::make_unique<Crop>(bytes, x, y, height);
}
std::unique_ptr<const NativeOperation> opaqueOperation(int height, NativeTarget instructions) {
    return std::make_unique<PixelByPixel>(rowFunctions(instructions).opaque, height);
}
std::unique_ptr<const NativeOperation> premultiplyOperation(int height, NativeTarget instructions) {
    return std::make_unique<PixelByPixel>(rowFunctions(instructions).premultiplied, height);
}
std::unique_ptr<const NativeOperation> alphaOperation(int height, NativeTarget instructions) {
    return std::make_unique<PixelByPixel>(rowFunctions(instructions).alphas, height);
}
std::unique_ptr<const NativeOperation> resizeOperation(int fromWidth, int fromHeight, int toWidth,
                                                       int toHeight, NativeTarget instructions) {
    return std::make_unique<Resize>(fromWidth, fromHeight, toWidth, toHeight, instructions);
}

}  // namespace qv
