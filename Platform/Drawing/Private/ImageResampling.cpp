#include "Platform/Drawing/Private/ImageResampling.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <memory>
#include <vector>

namespace qv {

namespace {

/// What one target pixel reads along an axis: weights of `count` source pixels from `first` on.
struct Taps {
    int first, count;
    std::size_t weights;  ///< index of the first weight
};

/// A tent as wide as two target pixels, or two source pixels where the axis grows: smooth enough to leave
/// little aliasing, and never negative, so that premultiplied colour stays within its alpha.
struct AxisFilter {
    std::vector<Taps> taps;
    std::vector<float> weights;

    AxisFilter(int source, int target) {
        double step = double(source) / target, reach = std::max(step, 1.0);
        for (int i = 0; i < target; ++i) {
            double center = std::clamp((i + 0.5) * step - 0.5, 0.0, source - 1.0);
            int first = std::max(int(std::floor(center - reach)) + 1, 0);
            int last = std::min(int(std::ceil(center + reach)) - 1, source - 1);
            auto weight = [&](int at) { return 1 - std::abs(at - center) / reach; };
            double sum = 0;
            for (int at = first; at <= last; ++at) sum += weight(at);
            taps.push_back({first, last - first + 1, weights.size()});
            for (int at = first; at <= last; ++at) weights.push_back(float(weight(at) / sum));
        }
    }
};

/// How one axis of a resizable picture is divided, in source and in target pixels. The middle has at least
/// one source pixel.
struct CapLayout {
    int sourceStart, sourceMiddle, sourceEnd;
    int targetStart, targetMiddle, targetEnd;
    int period;  ///< target pixels of one repetition of the middle

    CapLayout(int source, int target, double startCap, double endCap, double imageScale,
              double pixelsPerPoint) {
        double start = std::min(std::max(0.0, startCap * imageScale), double(source));
        double end = std::min(std::max(0.0, endCap * imageScale), double(source));
        if (double excess = (start + end) / (source - 1); excess > 1) start /= excess, end /= excess;
        sourceStart = int(std::lround(start));
        sourceEnd = std::min(int(std::lround(end)), source - 1 - sourceStart);
        sourceMiddle = source - sourceStart - sourceEnd;
        double growth = pixelsPerPoint / imageScale;
        double drawnStart = sourceStart * growth, drawnEnd = sourceEnd * growth;
        if (double excess = (drawnStart + drawnEnd) / target; excess > 1)
            drawnStart /= excess, drawnEnd /= excess;
        targetStart = int(std::lround(drawnStart));
        targetEnd = std::min(int(std::lround(drawnEnd)), target - targetStart);
        targetMiddle = target - targetStart - targetEnd;
        period = int(std::clamp(std::round(sourceMiddle * growth), 1.0, double(kMaximumImageSide)));
    }

    /// One of the three stretches of the axis: where it lies in the source and in the target.
    struct Part {
        int source, sourceLength, target, targetLength;
        bool repeats;
    };
    std::array<Part, 3> parts() const {
        return {{{0, sourceStart, 0, targetStart, false},
                 {sourceStart, sourceMiddle, targetStart, targetMiddle, true},
                 {sourceStart + sourceMiddle, sourceEnd, targetStart + targetMiddle, targetEnd, false}}};
    }
};

}  // namespace

Bitmap croppedBitmap(const Bitmap& source, int x, int y, int width, int height) {
    auto rowBytes = std::size_t(width) * 4;
    auto pixels = std::make_shared<std::vector<std::uint8_t>>(rowBytes * height);
    for (int row = 0; row < height; ++row)
        std::memcpy(pixels->data() + row * rowBytes, source.row(y + row) + std::size_t(x) * 4, rowBytes);
    return {width, height, std::move(pixels)};
}

Bitmap resampledBitmap(const Bitmap& source, int width, int height) {
    if (source.width == width && source.height == height) return source;
    AxisFilter across(source.width, width), down(source.height, height);
    auto pixels = std::make_shared<std::vector<std::uint8_t>>(std::size_t(width) * height * 4);
    std::vector<float> line(source.rowBytes());  // one target row at the source's width
    auto* out = pixels->data();
    for (const auto& rows : down.taps) {
        std::fill(line.begin(), line.end(), 0.0f);
        for (int i = 0; i < rows.count; ++i) {
            float weight = down.weights[rows.weights + i];
            const auto* row = source.row(rows.first + i);
            for (std::size_t x = 0; x < line.size(); ++x) line[x] += weight * float(row[x]);
        }
        for (const auto& columns : across.taps) {
            std::array<float, 4> sum{0.5f, 0.5f, 0.5f, 0.5f};  // rounds when it is cut
            const auto* pixel = line.data() + std::size_t(columns.first) * 4;
            const auto* weight = across.weights.data() + columns.weights;
            for (int i = 0; i < columns.count; ++i, pixel += 4)
                for (int c = 0; c < 4; ++c) sum[c] += weight[i] * pixel[c];
            for (float value : sum) *out++ = std::uint8_t(std::min(int(value), 255));
        }
    }
    return {width, height, std::move(pixels)};
}

Bitmap resizedByCaps(const UIImage& image, int width, int height, double pixelsPerPointX,
                     double pixelsPerPointY) {
    const auto& source = image.bitmap();
    const auto& caps = image.capInsets();
    CapLayout across(source.width, width, caps.left, caps.right, image.scale(), pixelsPerPointX);
    CapLayout down(source.height, height, caps.top, caps.bottom, image.scale(), pixelsPerPointY);
    bool tiles = image.resizingMode() == UIImage::ResizingMode::tile;
    auto pixels = std::make_shared<std::vector<std::uint8_t>>(std::size_t(width) * height * 4);
    for (const auto& y : down.parts()) {
        for (const auto& x : across.parts()) {
            if (x.sourceLength == 0 || y.sourceLength == 0 || x.targetLength == 0 || y.targetLength == 0)
                continue;
            auto part =
                resampledBitmap(croppedBitmap(source, x.source, y.source, x.sourceLength, y.sourceLength),
                                tiles && x.repeats ? across.period : x.targetLength,
                                tiles && y.repeats ? down.period : y.targetLength);
            for (int row = 0; row < y.targetLength; ++row) {
                auto* out = pixels->data() + (std::size_t(y.target + row) * width + x.target) * 4;
                const auto* tile = part.row(row % part.height);
                for (int left = x.targetLength; left > 0; left -= part.width, out += part.rowBytes())
                    std::memcpy(out, tile, std::size_t(std::min(left, part.width)) * 4);
            }
        }
    }
    return {width, height, std::move(pixels)};
}

}  // namespace qv
