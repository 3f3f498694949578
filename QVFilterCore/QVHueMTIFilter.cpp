#include "QVFilterCore/QVHueMTIFilter.h"

#include <array>
#include <cmath>
#include <numbers>

namespace qv {

namespace {
constexpr double kTurn = 2 * std::numbers::pi;
constexpr std::array<double, 3> kLuma = {0.2126, 0.7152, 0.0722};
}  // namespace

const QVFilterClass QVHueMTIFilterClass{
    .name = "QVHueMTIFilter",
    .superclass = &QVMTIOneInputFilterClass,
    .title = "Hue",
    .help = "Turns all hues round the colour wheel",
    .tags = {"colour wheel", "recolour", "tint", "colour correction"},
    .factory = makeFilter<QVHueMTIFilter>,
    .category = QVFilterCategory::adjustment,
    .properties =
        {
            qvProperty<&QVHueMTIFilter::hue, &QVHueMTIFilter::setHue>({
                .name = "hue",
                .title = "Angle",
                .help = "how far the hues turn, from red towards green",
                .minimum = -2 * std::numbers::pi,
                .maximum = 2 * std::numbers::pi,
                .unit = QVUnit::radians,
                .step = 0.01,
            }),
            qvProperty<&QVHueMTIFilter::keepsLuma, &QVHueMTIFilter::setKeepsLuma>({
                .name = "keepsLuma",
                .title = "Keep brightness",
                .help = "colours stay as bright as they were",
            }),
        },
};

MTIParameters QVHueMTIFilter::parameters() const {
    // Rodrigues' rotation about (1, 1, 1)/√3: each row is the one before, moved on by one place.
    const double cosine = std::cos(double(hue_)), sine = std::sin(double(hue_)) / std::numbers::sqrt3;
    const double same = (1 + 2 * cosine) / 3, next = (1 - cosine) / 3 - sine, last = (1 - cosine) / 3 + sine;
    std::array<std::array<double, 3>, 3> matrix = {std::array{same, next, last}, std::array{last, same, next},
                                                   std::array{next, last, same}};
    if (keepsLuma_) {
        for (std::size_t column = 0; column < 3; ++column) {
            double shift = kLuma[column];
            for (std::size_t row = 0; row < 3; ++row) shift -= kLuma[row] * matrix[row][column];
            for (auto& row : matrix) row[column] += shift;
        }
    }
    auto row = [&](std::size_t i) {
        return MTIVector{float(matrix[i][0]), float(matrix[i][1]), float(matrix[i][2])};
    };
    return {{"redRow", row(0)}, {"greenRow", row(1)}, {"blueRow", row(2)}};
}

MTIImage QVHueMTIFilter::outputImage() {
    // A float of radians misses a whole turn by up to half its last digit.
    constexpr double kInvisible = 1e-5;
    const double rest = std::remainder(double(hue_), kTurn);
    if (!(std::abs(rest) > kInvisible)) return inputImage();
    return QVMTIOneInputFilter::outputImage();
}

}  // namespace qv
