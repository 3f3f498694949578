#include "Platform/ImageGraph/Private/GaussianBlur.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace qv {

namespace {

// A wide Gaussian is run at half, a quarter, … of the size and enlarged again: as many passes at every radius
// and so at every size of the frame. Reducing with the weights 1 3 5 … 5 3 1 and enlarging bilinearly are
// blurs themselves; their variances are taken off the Gaussian in between. The limits were found against a
// float reference on noise, hard edges and pictures: from 54 dB, no pixel off by 3 of 255.

/// Narrower than this changes no 8-bit value; wider is as good as any, and keeps the passes few.
constexpr double kNarrowest = 0.2, kWidest = 16384;
/// Standard deviations (pixels of the image) from which half and a quarter of the size are fine enough.
constexpr double kHalfFrom = 2.1, kQuarterFrom = 8;
/// Taps on each side that are used; few, since each is a pipeline of its own. They reach to 3 standard
/// deviations; to 2.8 at full size, where taps are dear and nothing else adds to the error.
constexpr std::array<int, 11> kTapRadii{1, 2, 3, 4, 5, 6, 7, 9, 12, 16, 20};
constexpr double kReach = 3, kReachAtFullSize = 2.8;
constexpr double kWidestTaps = (kTapRadii.back() + 0.5) / kReach;
/// One pass reduces by 16 at most.
constexpr int kMostHalvingsOfAPass = 4;

/// Calls `each` with the factor of every reducing pass.
template <typename Each>
void forEachReduction(int halvings, Each&& each) {
    for (; halvings > 0; halvings -= kMostHalvingsOfAPass)
        each(1 << std::min(halvings, kMostHalvingsOfAPass));
}

/// Variance, in pixels of the input, that reducing adds: of two boxes and the mean of two pixels.
double reducingVariance(int factor) {
    return (double(factor) * factor - 1) / 6 + 0.25;
}

/// Variance that bilinear enlarging by 2^halvings adds on average, in pixels of the small image.
double enlargingVariance(int halvings) {
    if (halvings == 0) return 0;
    const int phases = 1 << std::min(halvings, 10);
    double sum = 0;
    for (int i = 0; i < phases; ++i) {
        const double t = (i + 0.5) / phases;
        sum += t * (1 - t);
    }
    return sum / phases;
}

/// What is left for the Gaussian at a reduced size, in pixels of that size.
double reducedDeviation(double deviation, int halvings) {
    double variance = deviation * deviation;
    forEachReduction(halvings, [&](int factor) {
        variance = (variance - reducingVariance(factor)) / (double(factor) * factor);
    });
    return std::sqrt(std::max(variance - enlargingVariance(halvings), 0.0));
}

int halvingsFor(double deviation) {
    if (deviation < kHalfFrom) return 0;
    int halvings = deviation < kQuarterFrom ? 1 : 2;
    while (reducedDeviation(deviation, halvings) > kWidestTaps) ++halvings;
    return halvings;
}

/// Weights of the taps 0, 1, … of a side; both sides together make 1.
std::vector<float> tapWeights(double deviation, bool isFullSize) {
    const int reach = int(std::ceil((isFullSize ? kReachAtFullSize : kReach) * deviation - 0.5));
    const auto radius = std::ranges::lower_bound(kTapRadii, reach);
    const int taps = radius == kTapRadii.end() ? kTapRadii.back() : *radius;
    std::vector<double> weights;
    double sum = 0;
    for (int i = 0; i <= taps; ++i) {
        weights.push_back(std::exp(-0.5 * i * i / (deviation * deviation)));
        sum += i == 0 ? weights.back() : 2 * weights.back();
    }
    std::vector<float> normalised;
    for (double weight : weights) normalised.push_back(float(weight / sum));
    return normalised;
}

void setVectors(MTIParameters& parameters, const std::string& name, const std::vector<float>& values) {
    for (std::size_t first = 0; first < values.size(); first += 4) {
        const std::size_t count = std::min<std::size_t>(4, values.size() - first);
        parameters.set(name + std::to_string(first / 4), MTIVector(std::span(values).subspan(first, count)));
    }
}

MTIParameters fetchedTaps(const std::vector<float>& weights) {
    MTIParameters parameters{{"radius", int(weights.size()) - 1}};
    setVectors(parameters, "weights", weights);
    return parameters;
}

/// Taps 1 and 2, 3 and 4, … as one sample each, which lies between them as their weights ask.
MTIParameters sampledTaps(const std::vector<float>& weights) {
    std::vector<float> samples;
    for (std::size_t i = 1; i < weights.size(); i += 2) {
        const float second = i + 1 < weights.size() ? weights[i + 1] : 0;
        const float weight = weights[i] + second;
        samples.push_back(weight);
        samples.push_back(float(i) + (weight > 0 ? second / weight : 0));
    }
    MTIParameters parameters{{"pairs", int(samples.size() / 2)}, {"center", weights.front()}};
    setVectors(parameters, "samples", samples);
    return parameters;
}

}  // namespace

bool blursVisibly(float radius) {
    return std::isfinite(radius) && radius >= kNarrowest;
}

ReducedGaussian reducedGaussian(float radius) {
    const double deviation = std::min(double(radius), kWidest);
    const int halvings = halvingsFor(deviation);
    ReducedGaussian reduced{{}, reducedDeviation(deviation, halvings)};
    forEachReduction(halvings, [&](int factor) { reduced.factors.push_back(factor); });
    return reduced;
}

int reducedSide(int side, int factor) {
    // What reaches beyond the borders takes twice the factor, less a pixel.
    return (side + 3 * factor - 3) / factor + 1;
}

double reducedBorder(double border, int factor) {
    return (border - 1) / factor + 1.5;
}

std::vector<BlurPass> planGaussianBlur(float radius, int width, int height, bool processor) {
    if (!blursVisibly(radius)) return {};
    const ReducedGaussian reduced = reducedGaussian(radius);

    std::vector<BlurPass> passes;
    int smallWidth = width, smallHeight = height;
    double border = 0, scale = 1;  // pixels of the small image to the left of the picture, and a pixel
    for (int factor : reduced.factors) {
        smallWidth = reducedSide(smallWidth, factor);
        smallHeight = reducedSide(smallHeight, factor);
        border = reducedBorder(border, factor);
        scale /= factor;
        passes.push_back(
            {processor ? "MTIReduce" : "MTIReduceSampled", smallWidth, smallHeight, {{"factor", factor}}});
    }

    const std::vector<float> weights = tapWeights(reduced.deviation, reduced.factors.empty());
    MTIParameters parameters = processor ? fetchedTaps(weights) : sampledTaps(weights);
    for (int vertical : {0, 1}) {
        parameters.set("vertical", vertical);
        passes.push_back(
            {processor ? "MTIGaussianFetched" : "MTIGaussianSampled", smallWidth, smallHeight, parameters});
    }

    if (!reduced.factors.empty()) {
        passes.push_back(
            {"MTIEnlarge",
             width,
             height,
             {{"scale", MTIVector{float(width * scale / smallWidth), float(height * scale / smallHeight)}},
              {"offset", MTIVector{float(border / smallWidth), float(border / smallHeight)}}}});
    }
    return passes;
}

}  // namespace qv
