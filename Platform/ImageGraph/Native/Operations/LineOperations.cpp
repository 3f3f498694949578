#include "Platform/ImageGraph/Native/Operations/LineOperations.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <vector>

#include "Platform/ImageGraph/Native/Operations/LineFunctions.h"
#include "Platform/ImageGraph/Native/Operations/RowBuffer.h"

namespace qv {

namespace {

/// Gathers lines: where tap i of the line that begins at a target's pixel lies.
class LineGather : public NativeOperation {
  public:
    LineGather(const LineGathering& gathering, NativeTarget instructions)
        : lines_(gathering), functions_(lineFunctions(instructions)) {}
    int rows(int) const override { return lines_.height; }

  protected:
    LineStep place(int tap) const {
        const int group = tap / lines_.reduction, rest = tap % lines_.reduction;
        return {lines_.origin.x + group * lines_.column.x + rest * lines_.tap.x,
                lines_.origin.y + group * lines_.column.y + rest * lines_.tap.y};
    }

    const LineGathering lines_;
    const LineFunctions& functions_;
};

/// Lines that step from row to row.
class GatherDown final : public LineGather {
  public:
    using LineGather::LineGather;

    void draw(int, const NativeImage* inputs, const NativeImage& target, std::byte*, int firstRow,
              int endRow) const override {
        // Turned, a line is a column of the target.
        const int firstPixel = lines_.isTurned ? firstRow : 0;
        const int pixels = lines_.isTurned ? endRow - firstRow : target.width;
        std::vector<LineTap> taps;
        for (int i = firstPixel * lines_.reduction; i < (firstPixel + pixels + 1) * lines_.reduction; ++i) {
            const LineStep at = place(i);
            const double left = std::floor(at.x);
            taps.push_back({rowOf(inputs[0], int(at.y)), int(left), float(at.x - left)});
        }
        functions_.down({.taps = taps.data(),
                         .reduction = lines_.reduction,
                         .lightsOnly = lines_.lightsOnly,
                         .isOnGrid = lines_.isOnGrid,
                         .width = inputs[0].width,
                         .firstLine = lines_.isTurned ? 0 : firstRow,
                         .endLine = lines_.isTurned ? target.width : endRow,
                         .pixels = pixels,
                         .out = target.pixels + firstRow * target.rowBytes,
                         .lineStride = lines_.isTurned ? 4 : target.rowBytes,
                         .pixelStride = lines_.isTurned ? target.rowBytes : 4});
    }
};

/// Lines that step from column to column.
class GatherAcross final : public LineGather {
  public:
    GatherAcross(const LineGathering& gathering, NativeTarget instructions)
        : LineGather(gathering, instructions),
          taps_((gathering.width + 1) * gathering.reduction),
          shares_(padded(taps_)) {
        for (int i = 0; i < taps_; ++i) {
            const LineStep at = place(i);
            const double upper = std::floor(at.y);
            places_.push_back({int(at.x), int(upper)});
            shares_[std::size_t(i)] = float(at.y - upper);
        }
        isLevel_ = std::ranges::all_of(places_, [&](const auto& p) { return p.y == places_.front().y; });
    }

    void draw(int, const NativeImage* inputs, const NativeImage& target, std::byte*, int firstRow,
              int endRow) const override {
        std::vector<float> sums(8 * std::size_t(target.width + 2 * kLineLanes));
        std::vector<std::uint32_t> upper(padded(taps_)), lower(lines_.isOnGrid ? 0 : padded(taps_));
        fill(upper, inputs[0], firstRow);
        for (int y = firstRow; y < endRow; ++y) {
            if (!lines_.isOnGrid) fill(lower, inputs[0], y + 1);
            functions_.across({.upper = upper.data(),
                               .lower = lines_.isOnGrid ? nullptr : lower.data(),
                               .shares = shares_.data(),
                               .reduction = lines_.reduction,
                               .lightsOnly = lines_.lightsOnly,
                               .pixels = target.width,
                               .out = target.pixels + y * target.rowBytes,
                               .sums = sums.data()});
            if (!lines_.isOnGrid)
                upper.swap(lower);
            else if (y + 1 < endRow)
                fill(upper, inputs[0], y + 1);
        }
    }

  private:
    struct Pixel {
        int x, y;
    };

    std::size_t padded(int taps) const { return std::size_t(taps + kLineLanes * lines_.reduction); }

    /// The pixels of the line that begins `row` rows below the first one.
    void fill(std::vector<std::uint32_t>& line, const NativeImage& input, int row) const {
        const auto copy = [&](int tap, int count) {
            const Pixel& at = places_[std::size_t(tap)];
            const std::uint8_t* from = rowOf(input, row + at.y) + 4 * std::clamp(at.x, 0, input.width - 1);
            std::memcpy(&line[std::size_t(tap)], from, std::size_t(count) * sizeof line.front());
        };
        const int first = std::clamp(-places_.front().x, 0, taps_);
        const int end = std::clamp(input.width - places_.front().x, first, taps_);
        for (int i = 0; i < first; ++i) copy(i, 1);
        if (isLevel_ && end > first) copy(first, end - first);
        for (int i = isLevel_ ? end : first; i < taps_; ++i) copy(i, 1);
    }

    int taps_;
    std::vector<Pixel> places_;
    std::vector<float> shares_;
    bool isLevel_ = false;
};

/// Rows with room beside them in which their outermost pixels go on, as many as a band has at hand.
class ExtendedRows {
  public:
    ExtendedRows(const NativeImage& image, int border) : image_(image), border_(border) {
        for (Slot& slot : slots_) slot.bytes.resize(4 * std::size_t(image.width + 2 * border + kLineLanes));
    }
    /// Pixel 0 of a row that stays until kSlots others have been asked for.
    const std::uint8_t* row(int y) {
        y = std::clamp(y, 0, image_.height - 1);
        Slot& slot = slots_[std::size_t(y) % kSlots];
        std::uint8_t* const pixels = slot.bytes.data() + 4 * border_;
        if (slot.y == y) return pixels;
        slot.y = y;
        const std::uint8_t* const from = rowOf(image_, y);
        const std::size_t last = 4 * std::size_t(image_.width - 1);
        std::memcpy(pixels, from, last + 4);
        for (int i = 1; i <= border_; ++i) {
            std::memcpy(pixels - 4 * i, from, 4);
            std::memcpy(pixels + last + 4 * std::size_t(i), from + last, 4);
        }
        return pixels;
    }

  private:
    static constexpr std::size_t kSlots = 32;  // a box has 19 rows at most
    struct Slot {
        int y = -1;
        std::vector<std::uint8_t> bytes;
    };
    const NativeImage& image_;
    int border_;
    std::array<Slot, kSlots> slots_;
};

class LineBox final : public NativeOperation {
  public:
    LineBox(int stepX, int stepY, float steps, int height, NativeTarget instructions)
        : stepX_(stepX), stepY_(stepY), height_(height), functions_(lineFunctions(instructions)) {
        whole_ = int(std::max((steps - 1) / 2, 0.0f));
        share_ = std::max((steps - 1) / 2 - float(whole_), 0.0f);
        scale_ = 1 / std::max(steps, 1.0f);
    }

    int rows(int) const override { return height_; }

    void draw(int, const NativeImage* inputs, const NativeImage& target, std::byte*, int firstRow,
              int endRow) const override {
        const int border = (whole_ + 1) * std::abs(stepX_);
        ExtendedRows extended(inputs[0], border);
        const auto tap = [&](int y, int index) {
            const int at = y + index * stepY_;
            return stepX_ == 0 ? rowOf(inputs[0], at) : extended.row(at) + 4 * index * stepX_;
        };
        std::vector<const std::uint8_t*> taps(std::size_t(2 * whole_ + 1));
        for (int y = firstRow; y < endRow; ++y) {
            for (int i = -whole_; i <= whole_; ++i) taps[std::size_t(i + whole_)] = tap(y, i);
            functions_.box({.rows = taps.data(),
                            .count = int(taps.size()),
                            .outermost = {tap(y, -whole_ - 1), tap(y, whole_ + 1)},
                            .weight = share_,
                            .scale = scale_,
                            .pixels = target.width,
                            .out = target.pixels + y * target.rowBytes});
        }
    }

  private:
    int stepX_, stepY_, height_;
    const LineFunctions& functions_;
    int whole_;    ///< taps on each side that count in full
    float share_;  ///< of the next ones
    float scale_;
};

}  // namespace

std::unique_ptr<const NativeOperation> lineGatherOperation(const LineGathering& g,
                                                           NativeTarget instructions) {
    const auto isWhole = [](double value) { return value == std::round(value); };
    const auto isPixel = [&](const LineStep& place) { return isWhole(place.x) && isWhole(place.y); };
    const auto leadsTo = [](const LineStep& step, double x, double y) { return step.x == x && step.y == y; };
    const auto isNear = [](const LineStep& place) {
        constexpr double kFar = 1 << 20;
        return std::abs(place.x) < kFar && std::abs(place.y) < kFar;
    };
    if (g.reduction < 1 || g.reduction > kMostReduction || !isNear(g.origin) || !isNear(g.column))
        return nullptr;
    if (g.isOnGrid && !(isPixel(g.tap) && isPixel(g.origin) && isPixel(g.column))) return nullptr;
    const bool isDown = g.tap.y == 1 && g.column.y == g.reduction && isWhole(g.origin.y) &&
                        leadsTo(g.row, 1, 0) && g.isTurned == g.isOnGrid;
    const bool isAcross = g.tap.x == 1 && g.column.x == g.reduction && isWhole(g.origin.x) &&
                          leadsTo(g.row, 0, 1) && !g.isTurned;
    if (isDown) return std::make_unique<GatherDown>(g, instructions);
    if (isAcross) return std::make_unique<GatherAcross>(g, instructions);
    return nullptr;
}

std::unique_ptr<const NativeOperation> lineBoxOperation(const LineStep& step, float steps, int height,
                                                        NativeTarget instructions) {
    constexpr float kMostSteps = 18;
    const bool isShort = std::abs(step.x) <= 1 && std::abs(step.y) <= 1;
    if (!isShort || !(steps > 0 && steps <= kMostSteps)) return nullptr;
    return std::make_unique<LineBox>(int(step.x), int(step.y), steps, height, instructions);
}

}  // namespace qv
