#include <algorithm>
#include <array>
#include <cmath>

#include "Platform/ImageGraph/MTIFilters.h"
#include "Tests/Support/TestContext.h"

namespace qv {
namespace {

using test::Pixel;
using Color = std::array<double, 3>;

double luminosity(const Color& c) {
    return 0.3 * c[0] + 0.59 * c[1] + 0.11 * c[2];
}
double saturation(const Color& c) {
    return *std::ranges::max_element(c) - *std::ranges::min_element(c);
}

Color clipColor(Color c) {
    const double l = luminosity(c), n = *std::ranges::min_element(c), x = *std::ranges::max_element(c);
    for (double& v : c) {
        if (n < 0) v = l + (v - l) * l / (l - n);
        if (x > 1) v = l + (v - l) * (1 - l) / (x - l);
    }
    return c;
}

Color setLuminosity(Color c, double l) {
    const double d = l - luminosity(c);
    for (double& v : c) v += d;
    return clipColor(c);
}

Color setSaturation(const Color& c, double s) {
    std::array<std::size_t, 3> order{0, 1, 2};
    std::ranges::stable_sort(order, {}, [&](std::size_t i) { return c[i]; });
    const auto [low, middle, high] = order;
    Color result{};
    if (c[high] > c[low]) {
        result[middle] = (c[middle] - c[low]) * s / (c[high] - c[low]);
        result[high] = s;
    }
    return result;
}

double hardLight(double b, double s) {
    if (s <= 0.5) return b * 2 * s;
    const double t = 2 * s - 1;
    return b + t - b * t;
}

double separable(MTIBlendMode mode, double b, double s) {
    switch (mode) {
        case MTIBlendMode::normal:
            return s;
        case MTIBlendMode::multiply:
            return b * s;
        case MTIBlendMode::screen:
            return b + s - b * s;
        case MTIBlendMode::overlay:
            return hardLight(s, b);
        case MTIBlendMode::darken:
            return std::min(b, s);
        case MTIBlendMode::lighten:
            return std::max(b, s);
        case MTIBlendMode::colorDodge:
            return b == 0 ? 0 : s == 1 ? 1 : std::min(1.0, b / (1 - s));
        case MTIBlendMode::colorBurn:
            return b == 1 ? 1 : s == 0 ? 0 : 1 - std::min(1.0, (1 - b) / s);
        case MTIBlendMode::hardLight:
            return hardLight(b, s);
        case MTIBlendMode::softLight: {
            if (s <= 0.5) return b - (1 - 2 * s) * b * (1 - b);
            const double d = b <= 0.25 ? ((16 * b - 12) * b + 4) * b : std::sqrt(b);
            return b + (2 * s - 1) * (d - b);
        }
        case MTIBlendMode::difference:
            return std::abs(b - s);
        case MTIBlendMode::exclusion:
            return b + s - 2 * b * s;
        case MTIBlendMode::add:
            return std::min(1.0, b + s);
        case MTIBlendMode::subtract:
            return std::max(0.0, b - s);
        default:
            return 0;
    }
}

Color blend(MTIBlendMode mode, const Color& b, const Color& s) {
    switch (mode) {
        case MTIBlendMode::hue:
            return setLuminosity(setSaturation(s, saturation(b)), luminosity(b));
        case MTIBlendMode::saturation:
            return setLuminosity(setSaturation(b, saturation(s)), luminosity(b));
        case MTIBlendMode::color:
            return setLuminosity(s, luminosity(b));
        case MTIBlendMode::luminosity:
            return setLuminosity(b, luminosity(s));
        default:
            return {separable(mode, b[0], s[0]), separable(mode, b[1], s[1]), separable(mode, b[2], s[2])};
    }
}

/// Blending and source-over compositing as the recommendation writes them, on straight colours.
Pixel composite(MTIBlendMode mode, const Color& b, double ab, const Color& s, double as) {
    const Color mixed = blend(mode, b, s);
    Pixel result{};
    for (std::size_t c = 0; c < 3; ++c) {
        const double source = (1 - ab) * s[c] + ab * mixed[c];
        result[c] = float(as * source + (1 - as) * ab * b[c]);
    }
    result[3] = float(as + ab * (1 - as));
    return result;
}

constexpr Color kColors[] = {{0, 0, 0},       {1, 1, 1},       {1, 0, 0},       {0, 0.2, 1},
                             {0.6, 0.6, 0.6}, {0.2, 0.8, 0.4}, {0.4, 0.2, 0.1}, {1, 0.8, 0.6},
                             {0.2, 0.4, 0.4}, {0.8, 0.2, 0.25}};
constexpr double kAlphas[] = {0, 0.2, 0.6, 1};
constexpr int kSwatches = int(std::size(kColors) * std::size(kAlphas));

Bitmap swatches(int width, int height) {
    return test::makeBitmap(width, height, [](int x, int y) {
        const auto i = std::size_t(x + y);  // one of them is 0
        const Color c = kColors[i / std::size(kAlphas)];
        return Pixel{float(c[0]), float(c[1]), float(c[2]), float(kAlphas[i % std::size(kAlphas)])};
    });
}

/// The straight colour that a premultiplied pixel of 8 bits stands for.
std::pair<Color, double> straight(const Bitmap& bitmap, int x, int y) {
    const std::uint8_t* p = bitmap.row(y) + x * 4;
    if (p[3] == 0) return {{}, 0};
    const double alpha = p[3];
    return {{p[0] / alpha, p[1] / alpha, p[2] / alpha}, alpha / 255};
}

TEST(MTIBlendFilter, FollowsTheFormulasForAllColoursAndAlphas) {
    const Bitmap backdrops = swatches(kSwatches, 1), sources = swatches(1, kSwatches);
    const CGSize size{kSwatches, kSwatches};
    const MTIImage backdrop = MTIImage::imageWithBitmap(backdrops).resize(size);
    const MTIImage source = MTIImage::imageWithBitmap(sources).resize(size);
    for (int m = 0; m < kBlendModeCount; ++m) {
        const auto mode = MTIBlendMode(m);
        for (double intensity : {1.0, 0.5}) {
            MTIBlendFilter filter(mode);
            filter.setInputImage(source);
            filter.setInputBackgroundImage(backdrop);
            filter.setIntensity(float(intensity));
            const test::Picture result = test::render(filter.outputImage());
            test::Picture expected{kSwatches, kSwatches, {}};
            for (int y = 0; y < kSwatches; ++y) {
                for (int x = 0; x < kSwatches; ++x) {
                    const auto [b, ab] = straight(backdrops, x, 0);
                    const auto [s, as] = straight(sources, 0, y);
                    const Pixel p = composite(mode, b, ab, s, as * intensity);
                    expected.values.insert(expected.values.end(), p.begin(), p.end());
                }
            }
            EXPECT_LE(test::worstDifference(result, expected), 1e-4)
                << blendModeName(mode) << " " << intensity;
        }
    }
}

TEST(MTIBlendFilter, StretchesTheSourceOverTheBackdrop) {
    const MTIImage backdrop = MTIImage::initWithColor({0, 0, 1, 1}, false, {40, 20});
    const MTIImage source = MTIImage::imageWithBitmap(test::makeBitmap(2, 1, [](int x, int) {
        return Pixel{1, 0, 0, x == 0 ? 1.0f : 0.0f};
    }));
    MTIBlendFilter filter(MTIBlendMode::normal);
    filter.setInputImage(source);
    EXPECT_FALSE(filter.outputImage());
    filter.setInputBackgroundImage(backdrop);
    const MTIImage image = filter.outputImage();
    EXPECT_EQ(image.size(), (CGSize{40, 20}));
    const test::Picture picture = test::render(image);
    EXPECT_NEAR(picture.at(2, 10)[0], 1, 0.01);
    EXPECT_NEAR(picture.at(37, 10)[2], 1, 0.01);
    EXPECT_NEAR(picture.at(19, 10)[0], 0.5, 0.05);
    filter.setInputImage({});
    EXPECT_FALSE(filter.outputImage());
}

TEST(MTIBlendWithMaskFilter, ShowsTheSourceWhereTheMaskIsWhite) {
    const MTIImage background = MTIImage::initWithColor({0, 0, 1, 1}, false, {4, 1});
    const MTIImage source = MTIImage::initWithColor({1, 0, 0, 0.5f}, false, {4, 1});
    const Bitmap maskBitmap = test::makeBitmap(4, 1, [](int x, int) {
        return Pixel{float(x == 0), float(x == 1), float(x == 2), x == 3 ? 0.2f : 1.0f};
    });
    for (int component = 0; component < 4; ++component) {
        for (auto mode : {MTIMaskMode::normal, MTIMaskMode::oneMinusMaskValue}) {
            MTIBlendWithMaskFilter filter;
            filter.setInputImage(source);
            filter.setInputBackgroundImage(background);
            EXPECT_FALSE(filter.outputImage());
            filter.setInputMask({MTIImage::imageWithBitmap(maskBitmap), MTIColorComponent(component), mode});
            const test::Picture picture = test::render(filter.outputImage());
            for (int x = 0; x < 4; ++x) {
                const double read = component == 3 ? (x == 3 ? 0.2 : 1.0) : double(x == component);
                const double mask = mode == MTIMaskMode::normal ? read : 1 - read;
                const double alpha = 0.5 * mask;
                EXPECT_NEAR(picture.at(x, 0)[0], alpha, 0.004) << component << " at " << x;
                EXPECT_NEAR(picture.at(x, 0)[2], 1 - alpha, 0.004) << component << " at " << x;
                EXPECT_NEAR(picture.at(x, 0)[3], 1, 0.004);
            }
        }
    }
}

}  // namespace
}  // namespace qv
