#include "QVPersonMask/Private/GuidedMask.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <new>
#include <vector>

namespace qv {

namespace {

/// Of the window in which mask and colours are compared, in parts of the guide's longer side.
constexpr int kWindowsASide = 72;
/// Colours that differ by less than the root of this, of 1, count as one surface.
constexpr float kSurface = 4e-4f;
/// Values between these become the mask's soft edge.
constexpr float kOutside = 0.3f, kInside = 0.75f;

/// Calls use(x, y, means) for each pixel with the means of `kValues` numbers a pixel over the window around
/// it, as far as that lies in the picture. The sums roll along, so the window's size costs nothing.
template <int kValues, typename Use>
void forBoxMeans(const std::vector<float>& values, cv::Size size, int reach, Use&& use) {
    const int width = size.width, rowValues = width * kValues;
    std::vector<float> columns(std::size_t(rowValues), 0.0f);
    const auto row = [&](int y) { return values.data() + std::size_t(y) * std::size_t(rowValues); };
    const auto take = [&](int y) {
        const float* source = row(y);
        for (int i = 0; i < rowValues; ++i) columns[std::size_t(i)] += source[i];
    };
    for (int y = 0; y < std::min(reach, size.height); ++y) take(y);
    for (int y = 0; y < size.height; ++y) {
        if (y + reach < size.height) take(y + reach);
        if (y > reach) {
            const float* source = row(y - reach - 1);
            for (int i = 0; i < rowValues; ++i) columns[std::size_t(i)] -= source[i];
        }
        const int high = std::min(y + reach, size.height - 1) - std::max(y - reach, 0) + 1;
        std::array<float, kValues> sums{}, means;
        const auto column = [&](int x) { return columns.data() + std::size_t(x) * kValues; };
        const auto add = [&](const float* column) {
            for (int i = 0; i < kValues; ++i) sums[std::size_t(i)] += column[i];
        };
        for (int x = 0; x < std::min(reach, width); ++x) add(column(x));
        for (int x = 0; x < width; ++x) {
            if (x + reach < width) add(column(x + reach));
            if (x > reach) {
                const float* gone = column(x - reach - 1);
                for (int i = 0; i < kValues; ++i) sums[std::size_t(i)] -= gone[i];
            }
            const int wide = std::min(x + reach, width - 1) - std::max(x - reach, 0) + 1;
            const float part = 1.0f / float(high * wide);
            for (int i = 0; i < kValues; ++i) means[std::size_t(i)] = sums[std::size_t(i)] * part;
            use(x, y, means.data());
        }
    }
}

/// A mask that is, in each window, a linear function of the picture's colour: slope · rgb + offset.
struct LocalModel {
    cv::Mat base;   ///< the mask, less `slope` times the picture's luma
    cv::Mat slope;  ///< by how much the mask changes with the luma
};

/// The guided filter of He, Sun and Tang (2013) with colours as guide.
LocalModel fitted(const cv::Mat& guide, const cv::Mat& mask) {
    const cv::Size size = guide.size();
    const int reach = std::max(1, std::max(size.width, size.height) / kWindowsASide);
    // r g b, mask, r·mask g·mask b·mask, rr rg rb gg gb bb; the rest makes whole vectors.
    constexpr int kMoments = 16, kModel = 4;
    const std::size_t pixels = std::size_t(size.area());
    std::vector<float> moments(pixels * kMoments), model(pixels * kModel);
    float* m = moments.data();
    for (int y = 0; y < size.height; ++y) {
        const std::uint8_t* rgb = guide.ptr(y);
        const float* value = mask.ptr<float>(y);
        for (int x = 0; x < size.width; ++x, rgb += 3, m += kMoments) {
            const float r = float(rgb[0]) / 255, g = float(rgb[1]) / 255, b = float(rgb[2]) / 255,
                        p = value[x];
            const std::array<float, kMoments> all = {r,     g,     b,     p,     r * p, g * p, b * p,
                                                     r * r, r * g, r * b, g * g, g * b, b * b};
            std::copy(all.begin(), all.end(), m);
        }
    }
    float* fit = model.data();
    forBoxMeans<kMoments>(moments, size, reach, [&](int, int, const float* mean) {
        const float r = mean[0], g = mean[1], b = mean[2], p = mean[3];
        const float pr = mean[4] - r * p, pg = mean[5] - g * p, pb = mean[6] - b * p;
        const float rr = mean[7] - r * r + kSurface, rg = mean[8] - r * g, rb = mean[9] - r * b;
        const float gg = mean[10] - g * g + kSurface, gb = mean[11] - g * b, bb = mean[12] - b * b + kSurface;
        // The covariance matrix's adjugate.
        const float c0 = gg * bb - gb * gb, c1 = gb * rb - rg * bb, c2 = rg * gb - gg * rb;
        const float c4 = rr * bb - rb * rb, c5 = rg * rb - rr * gb, c8 = rr * gg - rg * rg;
        const float inverse = 1 / (rr * c0 + rg * c1 + rb * c2);
        fit[0] = (c0 * pr + c1 * pg + c2 * pb) * inverse;
        fit[1] = (c1 * pr + c4 * pg + c5 * pb) * inverse;
        fit[2] = (c2 * pr + c5 * pg + c8 * pb) * inverse;
        fit[3] = p - fit[0] * r - fit[1] * g - fit[2] * b;
        fit += kModel;
    });

    LocalModel result{cv::Mat(size, CV_32F), cv::Mat(size, CV_32F)};
    forBoxMeans<kModel>(model, size, reach, [&](int x, int y, const float* mean) {
        const std::uint8_t* rgb = guide.ptr(y) + 3 * x;
        const float r = rgb[0], g = rgb[1], b = rgb[2], slope = (mean[0] + mean[1] + mean[2]) / 255;
        result.slope.ptr<float>(y)[x] = slope;
        result.base.ptr<float>(y)[x] = (mean[0] * r + mean[1] * g + mean[2] * b) / 255 + mean[3] -
                                       slope * (0.299f * r + 0.587f * g + 0.114f * b);
    });
    return result;
}

/// Rows of a small map, enlarged across; the two last ones are kept, as enlarging goes down the rows.
class EnlargedRows {
  public:
    EnlargedRows(const cv::Mat& map, int width)
        : map_(map), left_(std::size_t(width)), part_(std::size_t(width)) {
        for (int x = 0; x < width; ++x) {
            const float place = std::clamp((float(x) + 0.5f) * float(map.cols) / float(width) - 0.5f, 0.0f,
                                           float(map.cols - 1));
            left_[std::size_t(x)] = std::min(int(place), std::max(0, map.cols - 2));
            part_[std::size_t(x)] = place - float(left_[std::size_t(x)]);
        }
    }

    const float* row(int index) {
        Row& kept = rows_[std::size_t(index & 1)];
        if (kept.index != index) {
            kept.index = index;
            kept.values.resize(left_.size());
            const float* source = map_.ptr<float>(index);
            const int next = map_.cols > 1 ? 1 : 0;
            for (std::size_t x = 0; x < left_.size(); ++x) {
                const float* pair = source + left_[x];
                kept.values[x] = pair[0] + (pair[next] - pair[0]) * part_[x];
            }
        }
        return kept.values.data();
    }

  private:
    struct Row {
        int index = -1;
        std::vector<float> values;
    };
    const cv::Mat& map_;
    std::vector<int> left_;
    std::vector<float> part_;
    std::array<Row, 2> rows_;
};

}  // namespace

PixelBuffer guidedMask(const cv::Mat& mask, const cv::Mat& guide, const cv::Mat& luma) {
    const cv::Size size = luma.size();
    const PixelBuffer result =
        PixelBuffer::create(PixelFormat::gray8, size.width, size.height, {.fullRange = true});
    if (!result) throw std::bad_alloc();
    const LocalModel model = fitted(guide, mask);
    EnlargedRows bases(model.base, size.width), slopes(model.slope, size.width);
    const int rows = guide.rows;
    for (int y = 0; y < size.height; ++y) {
        const float place =
            std::clamp((float(y) + 0.5f) * float(rows) / float(size.height) - 0.5f, 0.0f, float(rows - 1));
        const int upper = int(place), lower = std::min(upper + 1, rows - 1);
        const float part = place - float(upper);
        const float *base0 = bases.row(upper), *base1 = bases.row(lower);
        const float *slope0 = slopes.row(upper), *slope1 = slopes.row(lower);
        const std::uint8_t* detail = luma.ptr(y);
        std::uint8_t* target = result.plane(0).data + std::size_t(y) * result.plane(0).rowBytes;
        constexpr float kGain = 255 / (kInside - kOutside);
        for (int x = 0; x < size.width; ++x) {
            const float base = base0[x] + (base1[x] - base0[x]) * part;
            const float slope = slope0[x] + (slope1[x] - slope0[x]) * part;
            const float value = (base + slope * float(detail[x]) - kOutside) * kGain;
            target[x] = std::uint8_t(std::clamp(value, 0.0f, 255.0f) + 0.5f);
        }
    }
    return result;
}

}  // namespace qv
