#include "QVALObjectContour/QVObjectContour.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include <opencv2/imgproc.hpp>

#include "QVALObjectContour/Private/LevelLines.h"

namespace qv {

namespace {

/// The longer side to which larger masks are reduced: what is left of a mask's detail lies well below a
/// line's width, and the time stays that of a small mask.
constexpr int kWorkingSide = 640;
/// Side of the smallest part that gets an outline, of the longer side.
constexpr double kSpeck = 1.0 / 128;
/// How far outside the subject an outline of a radius runs, in radii.
constexpr double kDistance = 0.64;
/// Of what an outline may deviate: the rest is for the curve that rounds the corners between its points.
constexpr double kShareOfCorners = 0.25;
/// Three box blurs in a row are close to a Gaussian, at a cost that does not grow with the radius.
constexpr int kBoxes = 3;

double varianceOfBox(int side) {
    return (double(side) * side - 1) / 12;
}

/// Share of a straight edge's height at which its blur is met `distance` outside.
double heightOutside(double distance, double variance) {
    return 0.5 * std::erfc(distance / std::sqrt(2 * variance));
}

/// The mask as 16-bit samples, so that lines can be found between its pixels.
cv::Mat softened(const cv::Mat& mask, double& variance) {
    cv::Mat field;
    mask.convertTo(field, CV_16U, 257);
    // Hard edges get a slope, whose middle shows where between the pixels they lie.
    constexpr int kSide = 3;
    for (int i = 0; i < 2; ++i) cv::blur(field, field, {kSide, kSide}, {-1, -1}, cv::BORDER_REPLICATE);
    variance = 2 * varianceOfBox(kSide);
    // A faint veil is no subject, however wide: below a quarter of white it is none, above three quarters
    // all.
    field.convertTo(field, CV_16U, 2, -32767.5);
    return field;
}

double areaOf(const QVOutline& outline) {
    double twice = 0;
    for (std::size_t i = 0; i < outline.size(); ++i) {
        const CGPoint &a = outline[i], &b = outline[(i + 1) % outline.size()];
        twice += a.x * b.y - b.x * a.y;
    }
    return std::abs(twice) / 2;
}

/// Only the points that are needed to stay within `tolerance`.
QVOutline simplified(const QVOutline& outline, double tolerance) {
    std::vector<cv::Point2f> points(outline.size()), kept;
    std::transform(outline.begin(), outline.end(), points.begin(), [](const CGPoint& point) {
        return cv::Point2f{float(point.x), float(point.y)};
    });
    cv::approxPolyDP(points, kept, tolerance, true);
    QVOutline result(kept.size());
    std::transform(kept.begin(), kept.end(), result.begin(), [](const cv::Point2f& point) {
        return CGPoint{point.x, point.y};
    });
    return result;
}

QVOutlineSet outlinesOf(const PixelBuffer& mask, int radius, float epsilon) {
    const auto& plane = mask.plane(0);
    cv::Mat reduced(mask.height(), mask.width(), CV_8U, plane.data, plane.rowBytes);
    const int side = std::max(mask.width(), mask.height());
    const int factor = (side + kWorkingSide - 1) / kWorkingSide;
    if (factor > 1) {
        const cv::Size size{(mask.width() + factor - 1) / factor, (mask.height() + factor - 1) / factor};
        cv::Mat small;
        cv::resize(reduced, small, size, 0, 0, cv::INTER_AREA);
        reduced = small;
    }
    double variance = 0;
    cv::Mat field = softened(reduced, variance);
    const double blur = std::min(double(std::max(radius, 0)), side / 4.0) / factor;
    // Three boxes have the variance of a Gaussian of half the radius.
    const int box = 2 * int(std::sqrt(blur * blur + 1) / 2) + 1;
    if (box > 1) {
        for (int i = 0; i < kBoxes; ++i) cv::blur(field, field, {box, box}, {-1, -1}, cv::BORDER_REPLICATE);
        variance += kBoxes * varianceOfBox(box);
    }
    cv::Mat framed;
    cv::copyMakeBorder(field, framed, 1, 1, 1, 1, cv::BORDER_CONSTANT, 0);
    const double level = 65535 * heightOutside(kDistance * blur, variance);

    const double perX = double(mask.width()) / reduced.cols, perY = double(mask.height()) / reduced.rows;
    const double tolerance = epsilon > 0 ? std::min(double(epsilon), 1.0) * side * kShareOfCorners : 0;
    const double smallest = std::pow(kSpeck * side, 2);
    QVOutlineSet outlines;
    for (QVOutline& line :
         levelLines({framed.ptr<std::uint16_t>(), framed.step1(), framed.cols, framed.rows}, float(level))) {
        for (CGPoint& point : line) {
            point = {std::clamp(point.x, 0.0, double(reduced.cols)) * perX,
                     std::clamp(point.y, 0.0, double(reduced.rows)) * perY};
        }
        if (areaOf(line) < smallest) continue;
        line = simplified(line, tolerance);
        if (line.size() > 2) outlines.push_back(std::move(line));
    }
    return outlines;
}

}  // namespace

QVOutlineSet QVObjectContour::getApproxContourPointsWithMask(const PixelBuffer& mask, int radius,
                                                             float epsilon) {
    if (!mask || mask.format() != PixelFormat::gray8) return {};
    try {
        return outlinesOf(mask, radius, epsilon);
    } catch (const std::exception&) {  // no memory
        return {};
    }
}

}  // namespace qv
