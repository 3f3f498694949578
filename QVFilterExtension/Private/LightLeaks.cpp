#include "QVFilterExtension/Private/LightLeaks.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numbers>

#include "Platform/Foundation/Random.h"
#include "Platform/ImageGraph/MTIFilters.h"
#include "QVFilterExtension/MTIFilters/Effect/Film/FilmSprites.h"
#include "QVFilterExtension/Private/RandomSeed.h"

namespace qv {

namespace {

constexpr int kReds = 23, kBlues = 4;
constexpr int kSteps = 6;
constexpr double kStep = 0.1, kPeriod = kSteps * kStep;  // seconds
constexpr double kPi = std::numbers::pi;

using Sequence = std::array<LightParam, kSteps>;

constexpr LightParam leak(unsigned index, double opacity = 1, unsigned flipType = 0, double angle = 0) {
    return LightParamMake(index, flipType, angle, opacity);
}

constexpr std::array<Sequence, 9> kSequences{{
    {leak(0), leak(1), leak(2), leak(3), leak(4), leak(5)},
    {leak(1, 0.6, 0, kPi), leak(1, 1, 0, kPi), leak(1, 0), leak(4, 0.4, 1), leak(0, 0.6, 1), leak(1, 0)},
    {leak(1, 0.5), leak(6), leak(7), leak(1, 0), leak(1, 0), leak(1, 0)},
    {leak(8), leak(9), leak(10), leak(11), leak(12), leak(12, 0)},
    {leak(8, 1, 1), leak(13), leak(14), leak(11), leak(12), leak(14, 0)},
    {leak(15), leak(16), leak(17), leak(17, 0.58), leak(4, 0.66), leak(1, 1, 2)},
    {leak(1, 0.55, 1), leak(18), leak(19), leak(20), leak(21), leak(22)},
    {leak(8), leak(13, 1, 1), leak(14, 1, 1), leak(11, 1, 1), leak(12, 1, 1), leak(12, 0)},
    {leak(23), leak(24), leak(25), leak(26), leak(26, 0), leak(26, 0)},
}};

}  // namespace

std::vector<std::string> lightLeakNames() {
    std::vector<std::string> names = numberedNames("light_film_leak_r_", kReds, 1, ".jpg");
    for (std::string& name : numberedNames("light_film_leak_b_", kBlues, 1, ".jpg"))
        names.push_back(std::move(name));
    return names;
}

std::optional<LightParam> lightLeakAt(double time, double strength, bool isStill) {
    if (!std::isfinite(time)) time = 0;
    const double period = std::floor(time / kPeriod);
    const double share = strength < 0.5 ? 0.05 + 0.3 * strength : 0.2 + 1.6 * (strength - 0.5);
    if (!isStill && filmDraw((strength + 2.34) * (period + 1934)) > share) return {};

    const auto draw = std::uint32_t(randomFromSeed(randomSeedFromDouble(period + 2382)));
    const double step = std::clamp((time - period * kPeriod) / kStep, 0.0, kSteps - 1.0);
    LightParam leak = kSequences[draw % kSequences.size()][std::size_t(step)];
    if (isStill)
        leak.opacity = 1;
    else if (std::abs(leak.opacity) < std::numeric_limits<float>::epsilon())
        return {};
    return leak;
}

MTIImage screenedLightLeak(const MTIImage& picture, const MTIImage& leakImage, const LightParam& leak,
                           MTIPixelFormat outputPixelFormat) {
    if (!leakImage) return picture;
    const CGAffineTransform mirrored =
        CGAffineTransformMakeScale(leak.flipType == 1 ? -1 : 1, leak.flipType == 2 ? -1 : 1);
    MTIOpacityFilter opacity;
    opacity.setInputImage(leakImage.imageByApplyingTransform(
        CGAffineTransformConcat(mirrored, CGAffineTransformMakeRotation(leak.rotateAngle))));
    opacity.setOpacity(float(leak.opacity));
    MTIBlendFilter blend(MTIBlendMode::screen);
    blend.setInputBackgroundImage(picture);
    blend.setInputImage(opacity.outputImage());
    blend.setOutputPixelFormat(outputPixelFormat);
    return blend.outputImage();
}

}  // namespace qv
