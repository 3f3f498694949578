#include "Platform/ImageGraph/Native/Operations/GaussianOperation.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <vector>

#include "Platform/ImageGraph/Native/Operations/RowBuffer.h"
#include "Platform/ImageGraph/Private/GaussianBlur.h"
#include "Platform/Media/PixelConversion.h"

namespace qv {

namespace {

constexpr double kReach = 3;  ///< standard deviations on each side
constexpr int kMostPairs = 32;

/// Weights of pairs of pixels, from the middle outwards or inwards, that make one half together.
using PairWeights = std::vector<std::int16_t>;

PairWeights gaussianWeights(double deviation) {
    const int reach = std::clamp(int(std::ceil(kReach * deviation - 0.5)), 1, kMostPairs - 1);
    std::vector<double> curve;
    double sum = 0;
    for (int i = 0; i <= reach; ++i) {
        // The middle pixel is a pair with itself.
        curve.push_back(std::exp(-0.5 * i * i / (deviation * deviation)) * (i == 0 ? 0.5 : 1));
        sum += curve.back();
    }
    PairWeights weights;
    int rest = 16384;
    for (double value : curve) {
        weights.push_back(std::int16_t(std::lround(value / sum * 16384)));
        rest -= weights.back();
    }
    weights.front() = std::int16_t(weights.front() + rest);
    return weights;
}

PairWeights reducingWeights(int factor) {
    PairWeights weights;
    for (int i = 0; i < factor; ++i) weights.push_back(std::int16_t((2 * i + 1) * 16384 / (factor * factor)));
    return weights;
}

/// Rows of words in the memory that the stages share.
struct WordRows {
    std::size_t offset = 0;  ///< bytes
    int width = 0, height = 0;

    std::size_t stride() const { return paddedValues(width); }
    std::size_t bytes() const { return stride() * std::size_t(height) * sizeof(std::int16_t); }
    std::int16_t* row(std::byte* scratch, int y) const {
        return reinterpret_cast<std::int16_t*>(scratch + offset) +
               std::size_t(std::clamp(y, 0, height - 1)) * stride();
    }
};

/// Pairs of rows, as row functions take them.
struct RowPairs {
    std::array<const void*, kMostPairs> upper, lower;
};

/// One row of `channels` blurred across, of one that is blurred down and has been extended.
void blurAcross(const RowFunctions& functions, const PairWeights& weights, const std::int16_t* row,
                int channels, int values, std::int16_t* out) {
    RowPairs shifted;
    for (std::size_t k = 0; k < weights.size(); ++k) {
        shifted.upper[k] = row - std::size_t(channels) * k;
        shifted.lower[k] = row + std::size_t(channels) * k;
    }
    functions.sumOfPairs(shifted.upper.data(), shifted.lower.data(), weights.data(), int(weights.size()),
                         values, out);
}

class GaussianOperation final : public NativeOperation {
  public:
    GaussianOperation(float radius, int width, int height, NativeTarget instructions)
        : functions_(rowFunctions(instructions)), width_(width), height_(height), placement_(width) {
        const ReducedGaussian reduced = reducedGaussian(radius);
        weights_ = gaussianWeights(reduced.deviation);
        factors_ = reduced.factors;
        double border = 0;
        WordRows small{0, width, height};
        for (int factor : factors_) {
            const std::size_t offset = reduced_.empty() ? 0 : small.offset + small.bytes();
            small = {offset, reducedSide(small.width, factor), reducedSide(small.height, factor)};
            reduced_.push_back(small);
            border = reducedBorder(border, factor);
            scale_ *= factor;
        }
        if (factors_.empty()) return;
        // Pixel x lies (2 x + origin) / (2 scale) pixels of the small picture from its first one.
        origin_ = int(std::lround(2 * scale_ * border)) + 1 - scale_;
        for (int x = 0; x < width; ++x) {
            const int place = 2 * x + origin_;
            placement_.set(x, place / (2 * scale_), shareOf(place));
        }
    }

    int stageCount() const override { return int(reduced_.size()) + 1; }
    int rows(int stage) const override {
        return stage < int(reduced_.size()) ? reduced_[std::size_t(stage)].height : height_;
    }
    std::size_t scratchBytes() const override {
        return reduced_.empty() ? 0 : reduced_.back().offset + reduced_.back().bytes();
    }

    void draw(int stage, const NativeImage* inputs, const NativeImage& target, std::byte* scratch,
              int firstRow, int endRow) const override {
        if (stage < int(reduced_.size()))
            reduce(std::size_t(stage), inputs[0], scratch, firstRow, endRow);
        else if (reduced_.empty())
            blur(inputs[0], target, firstRow, endRow);
        else
            enlarge(target, scratch, firstRow, endRow);
    }

  private:
    /// How far a place lies on the way from a pixel of the small picture to the next, of 32767.
    int shareOf(int place) const { return int(std::int64_t(place % (2 * scale_)) * 32767 / (2 * scale_)); }

    /// Draws rows of a reduced picture from those of the one before.
    void reduce(std::size_t stage, const NativeImage& input, std::byte* scratch, int firstRow,
                int endRow) const {
        const WordRows& to = reduced_[stage];
        const int factor = factors_[stage], reach = 2 * factor - 1, groups = to.width + 1;
        const PairWeights weights = reducingWeights(factor);
        const int width = stage == 0 ? input.width : reduced_[stage - 1].width;
        RowBuffer means(reach, width, groups * factor - width - reach), ramps(0, groups * factor, 0);
        RowPairs rows;
        for (int y = firstRow; y < endRow; ++y) {
            for (int i = 0; i < factor; ++i) {
                const int upper = y * factor - reach + i, lower = y * factor - i;
                rows.upper[std::size_t(i)] = rowBefore(stage, input, scratch, upper);
                rows.lower[std::size_t(i)] = rowBefore(stage, input, scratch, lower);
            }
            (stage == 0 ? functions_.sumOfBytePairs : functions_.sumOfPairs)(
                rows.upper.data(), rows.lower.data(), weights.data(), factor, width * 4, means.row());
            means.extend();
            // Groups of `factor` pixels: their means, and their means with rising weights.
            std::int16_t* mean = means.row() - 4 * reach;
            const std::int16_t* ramp = mean;
            for (int pixels = groups * factor / 2; pixels >= groups; pixels /= 2) {
                functions_.joined(mean, ramp, pixels, mean, ramps.row());
                ramp = ramps.row();
            }
            functions_.tents(mean, ramp, to.width * 4, to.row(scratch, y));
        }
    }

    const void* rowBefore(std::size_t stage, const NativeImage& input, std::byte* scratch, int y) const {
        if (stage == 0) return rowOf(input, y);
        return reduced_[stage - 1].row(scratch, y);
    }

    void blurAcross(const std::int16_t* row, int width, std::int16_t* out) const {
        qv::blurAcross(functions_, weights_, row, 4, width * 4, out);
    }

    /// A narrow Gaussian, at the full size.
    void blur(const NativeImage& input, const NativeImage& target, int firstRow, int endRow) const {
        const int reach = int(weights_.size()) - 1;
        RowBuffer down(reach, width_, reach), across(0, width_, 0);
        RowPairs rows;
        for (int y = firstRow; y < endRow; ++y) {
            for (int k = 0; k <= reach; ++k) {
                rows.upper[std::size_t(k)] = rowOf(input, y - k);
                rows.lower[std::size_t(k)] = rowOf(input, y + k);
            }
            functions_.sumOfBytePairs(rows.upper.data(), rows.lower.data(), weights_.data(), reach + 1,
                                      width_ * 4, down.row());
            down.extend();
            blurAcross(down.row(), width_, across.row());
            functions_.bytes(across.row(), width_ * 4, target.pixels + y * target.rowBytes);
        }
    }

    /// Blurs the most reduced picture and enlarges it.
    void enlarge(const NativeImage& target, std::byte* scratch, int firstRow, int endRow) const {
        const WordRows& small = reduced_.back();
        const int reach = int(weights_.size()) - 1;
        RowBuffer down(reach, small.width, reach), mixed(0, small.width, 1);
        std::array<RowBuffer, 2> blurred{RowBuffer(0, small.width, 1), RowBuffer(0, small.width, 1)};
        std::array<int, 2> blurredRow{-1, -1};
        RowPairs rows;
        const auto blurredSmallRow = [&](int y) {
            const std::size_t slot = std::size_t(y & 1);
            if (blurredRow[slot] == y) return blurred[slot].row();
            for (int k = 0; k <= reach; ++k) {
                rows.upper[std::size_t(k)] = small.row(scratch, y - k);
                rows.lower[std::size_t(k)] = small.row(scratch, y + k);
            }
            functions_.sumOfPairs(rows.upper.data(), rows.lower.data(), weights_.data(), reach + 1,
                                  small.width * 4, down.row());
            down.extend();
            blurAcross(down.row(), small.width, blurred[slot].row());
            blurredRow[slot] = y;
            return blurred[slot].row();
        };
        for (int y = firstRow; y < endRow; ++y) {
            const int place = 2 * y + origin_, above = place / (2 * scale_);
            const std::int16_t *upper = blurredSmallRow(above), *lower = blurredSmallRow(above + 1);
            functions_.mixed(upper, lower, std::int16_t(shareOf(place)), small.width * 4, mixed.row());
            mixed.extend();
            functions_.between(mixed.row(), placement_.left.data(), placement_.weights.data(), width_,
                               target.pixels + y * target.rowBytes);
        }
    }

    const RowFunctions& functions_;
    int width_, height_;
    std::vector<int> factors_;
    PairWeights weights_;
    std::vector<WordRows> reduced_;
    int scale_ = 1, origin_ = 0;
    Placement placement_;
};

}  // namespace

std::unique_ptr<const NativeOperation> gaussianOperation(float radius, int width, int height,
                                                         NativeTarget instructions) {
    return std::make_unique<GaussianOperation>(radius, width, height, instructions);
}

void blurGray(const PixelBuffer& gray, float radius, int firstRow, int endRow, std::uint8_t* pixels,
              std::size_t rowBytes) {
    const NativeTarget* instructions = nativeTargetOfMachine();
    // Of the portable functions, where the machine has none of its own.
    const RowFunctions& functions = rowFunctions(instructions ? *instructions : NativeTarget::neon);
    const PairWeights weights = gaussianWeights(reducedGaussian(radius).deviation);
    const int width = gray.width(), reach = int(weights.size()) - 1, rows = endRow - firstRow;
    // Row functions read and write whole groups; a buffer's last row may end before.
    const std::size_t stride = (std::size_t(width) + kRowGroup - 1) / kRowGroup * kRowGroup;
    std::vector<std::uint8_t> in(stride * std::size_t(rows + 2 * reach));
    const auto rowAt = [&](int y) { return in.data() + stride * std::size_t(y - firstRow + reach); };
    for (int y = firstRow - reach; y < endRow + reach; ++y) {
        const PixelBuffer::Plane& plane = gray.plane(0);
        std::memcpy(rowAt(y), plane.data + std::size_t(std::clamp(y, 0, gray.height() - 1)) * plane.rowBytes,
                    std::size_t(width));
    }
    std::vector<std::int16_t> down(stride + 2 * std::size_t(reach)), across(stride);
    std::int16_t* middle = down.data() + reach;
    const auto out = std::make_shared<std::vector<std::uint8_t>>(stride * std::size_t(rows));
    RowPairs pairs;
    for (int y = firstRow; y < endRow; ++y) {
        for (int k = 0; k <= reach; ++k) {
            pairs.upper[std::size_t(k)] = rowAt(y - k);
            pairs.lower[std::size_t(k)] = rowAt(y + k);
        }
        functions.sumOfBytePairs(pairs.upper.data(), pairs.lower.data(), weights.data(), reach + 1, width,
                                 middle);
        std::fill_n(down.data(), reach, middle[0]);
        std::fill_n(middle + width, reach, middle[width - 1]);
        blurAcross(functions, weights, middle, 1, width, across.data());
        functions.bytes(across.data(), width, out->data() + stride * std::size_t(y - firstRow));
    }
    const PixelBuffer blurred =
        PixelBuffer::wrap(PixelFormat::gray8, width, rows, {}, {{out->data(), stride}}, out);
    convertRowsToRGBA8(blurred, pixels + std::size_t(firstRow) * rowBytes, rowBytes, 0, rows);
}

}  // namespace qv
