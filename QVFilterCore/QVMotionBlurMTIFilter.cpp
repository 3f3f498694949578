#include "QVFilterCore/QVMotionBlurMTIFilter.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <utility>

namespace qv {

namespace {

using Blur = QVMotionBlurMTIFilter;

// Functions of the passes; the class's own draws two kinds of them.
constexpr std::string_view kBox = "MTILineBox", kGather = "MTILineGather";
constexpr std::int32_t kSamples = 0, kSpread = 1;
constexpr double kSampleTaps = 8;
/// Longest line that the samples fill without gaps, pixels.
constexpr double kLongestSampled = 10;
/// Longest line of the box pass, steps.
constexpr double kLongestBox = 18;
/// Steps that a column of the gathered picture stands for; few choices, since each is a pipeline of its own.
constexpr std::array<int, 7> kReductions{2, 3, 4, 6, 8, 12, 16};
/// A line that leaves the pixel grid by less than this over the whole picture lies on it.
constexpr double kOnGrid = 0.05;

int reductionFor(double steps) {
    const auto enough =
        std::ranges::find_if(kReductions, [&](int reduction) { return steps / reduction <= kLongestBox; });
    return enough == kReductions.end() ? kReductions.back() : *enough;
}

}  // namespace

/// The line of a blur, taken in steps of one pixel along the axis of the picture that it is closest to.
struct QVMotionBlurMTIFilter::Line {
    CGSize picture;
    bool isDown;    ///< the axis is y
    double slope;   ///< pixels across the axis per step
    double steps;   ///< whole length
    bool isOnGrid;  ///< every step leads to a pixel
    bool isTurned;  ///< the gathered picture's columns are its rows

    Line(double size, double angle, CGSize pictureSize) : picture(pictureSize) {
        const double right = std::cos(angle), down = -std::sin(angle);
        const double steeper = std::abs(down) - std::abs(right);
        // A diagonal is gathered into the fewest pixels along the picture's shorter side.
        constexpr double kDiagonal = 1e-9;
        isDown = std::abs(steeper) < kDiagonal ? picture.height < picture.width : steeper > 0;
        slope = isDown ? right / down : down / right;
        steps = size * std::abs(isDown ? down : right);
        const double nearest = std::round(slope);
        isOnGrid = std::abs(slope - nearest) * (side() + steps) < kOnGrid;
        if (isOnGrid) slope = nearest;
        isTurned = isOnGrid && isDown;
    }

    double side() const { return isDown ? picture.height : picture.width; }
    double acrossSide() const { return isDown ? picture.width : picture.height; }
    MTIVector vector(double along, double across) const {
        return isDown ? MTIVector{float(across), float(along)} : MTIVector{float(along), float(across)};
    }
    MTIVector tapStep() const { return vector(1, slope); }
    /// A place in the gathered picture.
    MTIVector gathered(double column, double row) const {
        return isTurned ? MTIVector{float(row), float(column)} : MTIVector{float(column), float(row)};
    }
    CGSize gatheredSize(double columns, double rows) const {
        return isTurned ? CGSize{rows, columns} : CGSize{columns, rows};
    }
    /// A linear function of a place along and across the axis, as a function of x, y and 1.
    MTIVector function(double along, double across, double constant) const {
        const MTIVector v = vector(along, across);
        return {v[0], v[1], float(constant)};
    }
};

const QVFilterClass QVMotionBlurMTIFilterClass{
    .name = "QVMotionBlurMTIFilter",
    .superclass = &QVMTIOneInputFilterClass,
    .title = "Directional blur",
    .help = "Smears the picture along a direction",
    .tags = {"motion blur", "smear", "speed"},
    .factory = makeFilter<QVMotionBlurMTIFilter>,
    .category = QVFilterCategory::blur,
    .properties =
        {
            qvProperty<&Blur::blurSize, &Blur::setBlurSize>({
                .name = "blurSize",
                .title = "Length",
                .help = "whole length of the smear",
                .maximum = 4096,
                .unit = QVUnit::pixels,
                .step = 1,
            }),
            qvProperty<&Blur::blurAngle, &Blur::setBlurAngle>({
                .name = "blurAngle",
                .title = "Direction",
                .help = "anticlockwise from the horizontal",
                .minimum = -2 * std::numbers::pi,
                .maximum = 2 * std::numbers::pi,
                .unit = QVUnit::radians,
                .step = 0.01,
            }),
            qvProperty<&Blur::lightsOnly, &Blur::setLightsOnly>({
                .name = "lightsOnly",
                .title = "Lights only",
                .help = "smears the lights of the picture and leaves the rest black",
            }),
        },
};

MTIImage QVMotionBlurMTIFilter::outputImage() {
    const bool isLine = blurSize_ > 0 && std::isfinite(blurSize_) && std::isfinite(blurAngle_);
    if (!inputImage() || (!isLine && !lightsOnly_)) return inputImage();
    if (!isLine) {
        return applied(stockKernel(kBox), {inputImage()}, inputImage().size(),
                       {{"tapStep", MTIVector{0, 0}}, {"steps", 1.0f}});
    }
    const Line line(blurSize_, blurAngle_, inputImage().size());
    if (line.isOnGrid && line.steps <= kLongestBox) {
        return applied(stockKernel(kBox), {inputImage()}, inputImage().size(),
                       {{"tapStep", line.tapStep()}, {"steps", float(line.steps)}});
    }
    const MTIImage smeared = blurSize_ > kLongestSampled ? smearedByColumns(line) : MTIImage();
    return smeared ? smeared : sampled();
}

MTIImage QVMotionBlurMTIFilter::applied(std::shared_ptr<const MTIRenderPipelineKernel> kernel,
                                        std::vector<MTIImage> images, CGSize size,
                                        MTIParameters parameters) const {
    if (!kernel) return {};
    if (lightsOnly_ && images.back().node() == inputImage().node())
        parameters.set("lightsOnly", std::int32_t(true));
    return kernel->applyToInputImages(std::move(images), std::move(parameters), size, outputPixelFormat());
}

MTIImage QVMotionBlurMTIFilter::sampled() const {
    MTIImage image = inputImage();
    double length = blurSize_;
    do {
        length /= kSampleTaps;
        const MTIVector tapStep{float(length * std::cos(blurAngle_)), float(-length * std::sin(blurAngle_))};
        image = applied(filterClass().kernel(), {image}, image.size(),
                        {{"pass", kSamples}, {"tapStep", tapStep}});
    } while (length > kLongestSampled / kSampleTaps);
    return image;
}

MTIImage QVMotionBlurMTIFilter::smearedByColumns(const Line& line) const {
    // A row of the gathered picture is a line of the blur, a column `scale` steps of it; the first one's
    // middle lies at `start`. Columns outside the picture hold what its edges go on with.
    int reduction = reductionFor(line.steps);
    const double border = std::ceil(line.steps / 2 / reduction) + 2;
    const double firstStep = -border * reduction;
    const double slide = line.slope * (line.side() - 1);
    const double firstRow = std::floor(std::min(0.0, -slide));
    const double lastRow = std::ceil(line.acrossSide() - 1 + std::max(0.0, -slide));
    double width = std::ceil(line.side() / reduction) + 2 * border;
    const double height = lastRow - firstRow + 1;
    if (width > kMaximumImageSide || height > kMaximumImageSide) return {};

    const std::int32_t isTurned = line.isTurned;
    MTIImage image = applied(stockKernel(kGather), {inputImage()}, line.gatheredSize(width, height),
                             {{"isTurned", isTurned},
                              {"reduction", std::int32_t(reduction)},
                              {"isOnGrid", std::int32_t(line.isOnGrid)},
                              {"tapStep", line.tapStep()},
                              {"origin", line.vector(firstStep, firstRow + line.slope * firstStep)},
                              {"columnStep", line.vector(reduction, reduction * line.slope)},
                              {"rowStep", line.vector(0, 1)}});
    double scale = reduction, start = firstStep + reduction - 0.5, columns = line.steps / reduction;
    while (columns > kLongestBox) {
        reduction = reductionFor(columns);
        width = std::ceil(width / reduction) + 2;
        image = applied(stockKernel(kGather), {image}, line.gatheredSize(width, height),
                        {{"isTurned", isTurned},
                         {"reduction", std::int32_t(reduction)},
                         {"isOnGrid", std::int32_t(true)},
                         {"tapStep", line.gathered(1, 0)},
                         {"origin", line.gathered(-reduction, 0)},
                         {"columnStep", line.gathered(reduction, 0)},
                         {"rowStep", line.gathered(0, 1)}});
        start -= 0.5 * scale;
        scale *= reduction;
        columns /= reduction;
    }

    // Gathering and spreading blur by a sixth of a column's variance each; the box has the rest of columns²
    // / 12.
    const double box = std::sqrt(std::max(columns * columns - 4, 1.0));
    image = applied(stockKernel(kBox), {image}, line.gatheredSize(width, height),
                    {{"tapStep", line.gathered(1, 0)}, {"steps", float(box)}});
    std::vector<MTIImage> images{image};
    if (lightsOnly_) images.push_back(inputImage());
    return applied(filterClass().kernel(), std::move(images), line.picture,
                   {{"pass", kSpread},
                    {"isTurned", isTurned},
                    {"isOnGrid", std::int32_t(line.isOnGrid)},
                    {"column", line.function(1 / scale, 0, -start / scale)},
                    {"row", line.function(-line.slope, 1, -firstRow)}});
}

}  // namespace qv
