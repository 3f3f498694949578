#include "QVPersonMask/Private/PersonEstimate.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <vector>

#include <opencv2/imgproc.hpp>

#include "QVPersonMask/PersonMaskSequence.h"
#include "QVPersonMask/Private/GuidedMask.h"

namespace qv {

namespace {

/// The longer side, at most, of the picture in which edges are looked for. Twice the network's: its own edges
/// are uncertain by a pixel or two.
constexpr int kGuideSide = 512;
/// What belongs to a blob: likelihoods above this.
constexpr float kBlob = 0.3f;
/// What a blob must have of certain pixels to count, and to count wholly, in parts of its area.
constexpr float kDoubtful = 0.1f, kCertain = 0.4f, kCertainLikelihood = 0.9f;
/// What the pictures of two frames may differ by, codes of each channel, before they say nothing about each
/// other.
constexpr float kStill = 6;

cv::Mat resized(const cv::Mat& source, cv::Size size) {
    cv::Mat result;
    const bool shrinks = size.width <= source.cols && size.height <= source.rows;
    cv::resize(source, result, size, 0, 0, shrinks ? cv::INTER_AREA : cv::INTER_LINEAR);
    return result;
}

cv::Size guideSize(cv::Size frame) {
    // Whole pixels become one where the sides allow it: so they are averaged fastest.
    const int factor = (std::max(frame.width, frame.height) + kGuideSide - 1) / kGuideSide;
    return {std::max(1, frame.width / factor), std::max(1, frame.height / factor)};
}

cv::Mat turned(const cv::Mat& source, int rotation) {
    cv::Mat result = source;
    if (rotation == 90) cv::rotate(source, result, cv::ROTATE_90_CLOCKWISE);
    if (rotation == 180) cv::rotate(source, result, cv::ROTATE_180);
    if (rotation == 270) cv::rotate(source, result, cv::ROTATE_90_COUNTERCLOCKWISE);
    return result;
}

/// Takes away blobs that have no certain core: the network's hesitation about lamps and cups.
void dropDoubtful(cv::Mat& likelihood) {
    cv::Mat labels;
    const int count = cv::connectedComponents(likelihood > kBlob, labels, 8, CV_32S);
    std::vector<int> area(std::size_t(count), 0), core(std::size_t(count), 0);
    for (int y = 0; y < labels.rows; ++y) {
        const int* label = labels.ptr<int>(y);
        const float* value = likelihood.ptr<float>(y);
        for (int x = 0; x < labels.cols; ++x) {
            ++area[std::size_t(label[x])];
            core[std::size_t(label[x])] += value[x] > kCertainLikelihood;
        }
    }
    std::vector<float> factor(std::size_t(count), 1.0f);
    for (std::size_t i = 1; i < factor.size(); ++i)
        factor[i] =
            std::clamp((float(core[i]) / float(area[i]) - kDoubtful) / (kCertain - kDoubtful), 0.0f, 1.0f);
    for (int y = 0; y < labels.rows; ++y) {
        const int* label = labels.ptr<int>(y);
        float* value = likelihood.ptr<float>(y);
        for (int x = 0; x < labels.cols; ++x) value[x] *= factor[std::size_t(label[x])];
    }
}

}  // namespace

PersonEstimate estimatePerson(SegmentationNetwork& network, const cv::Mat& rgba, int rotation) {
    PersonEstimate estimate;
    cv::cvtColor(rgba, estimate.luma, cv::COLOR_RGBA2GRAY);
    cv::cvtColor(resized(rgba, guideSize(rgba.size())), estimate.guide, cv::COLOR_RGBA2RGB);
    const bool lies = rotation == 90 || rotation == 270;
    const cv::Size upright(network.width(), network.height());
    estimate.small = resized(estimate.guide, lies ? cv::Size(upright.height, upright.width) : upright);
    const cv::Mat input = turned(estimate.small, rotation).clone();
    std::vector<float> likelihood = network.run({input.data, input.total() * 3});
    estimate.likelihood = turned(cv::Mat(upright, CV_32F, likelihood.data()), (360 - rotation) % 360).clone();
    return estimate;
}

cv::Mat steadyLikelihood(const PersonEstimate& frame, std::span<const Neighbour> neighbours) {
    const cv::Size size = frame.small.size();
    cv::Mat sum = frame.likelihood.clone(), weights(size, CV_32F, cv::Scalar(1)), difference(size, CV_32F);
    for (const Neighbour& neighbour : neighbours) {
        const PersonEstimate& other = *neighbour.estimate;
        if (other.small.size() != size) continue;
        for (int y = 0; y < size.height; ++y) {
            const std::uint8_t *a = frame.small.ptr(y), *b = other.small.ptr(y);
            float* d = difference.ptr<float>(y);
            for (int x = 0; x < size.width; ++x, a += 3, b += 3)
                d[x] = float(std::abs(a[0] - b[0]) + std::abs(a[1] - b[1]) + std::abs(a[2] - b[2])) / 3;
        }
        // Single pixels are noisy, and what moves takes its surroundings along.
        cv::boxFilter(difference, difference, -1, {3, 3}, {-1, -1}, true, cv::BORDER_REPLICATE);
        const float near = 1 - float(neighbour.distance) / (PersonMaskSequence::kReach + 1);
        for (int y = 0; y < size.height; ++y) {
            const float *d = difference.ptr<float>(y), *p = other.likelihood.ptr<float>(y);
            float *s = sum.ptr<float>(y), *w = weights.ptr<float>(y);
            for (int x = 0; x < size.width; ++x) {
                const float part = d[x] / kStill;
                const float alike = near / (1 + part * part * part * part);
                s[x] += alike * p[x];
                w[x] += alike;
            }
        }
    }
    return sum / weights;
}

PixelBuffer refinedMask(const PersonEstimate& frame, const cv::Mat& likelihood) {
    // The network's enlargement leaves a grid of two pixels.
    cv::Mat smooth;
    cv::boxFilter(likelihood, smooth, -1, {3, 3}, {-1, -1}, true, cv::BORDER_REPLICATE);
    dropDoubtful(smooth);
    // Holes are blobs of the background.
    smooth = 1 - smooth;
    dropDoubtful(smooth);
    smooth = 1 - smooth;
    return guidedMask(resized(smooth, frame.guide.size()), frame.guide, frame.luma);
}

}  // namespace qv
