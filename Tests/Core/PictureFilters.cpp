// The auxiliary filters that need no file of their own, against what they compute written out.

#include <algorithm>
#include <numbers>

#include "Platform/Geometry/UIColor.h"
#include "QVFilterCore/QVExposureMTIFilter.h"
#include "QVFilterCore/QVHueMTIFilter.h"
#include "QVFilterCore/QVLookupMTIFilter.h"
#include "QVFilterCore/QVTileMTIFilter.h"
#include "QVFilterCore/QVTurnBWMTIFilter.h"
#include "QVFilterCore/QVUnSharpMaskMTIFilter.h"
#include "QVFilterExtension/MTIFilters/QVInterlayerFilter.h"
#include "Tests/Support/TestContext.h"

namespace qv::test {
namespace {

constexpr double kPi = std::numbers::pi;

float lumaOf(const Pixel& c) {
    return 0.2126f * c[0] + 0.7152f * c[1] + 0.0722f * c[2];
}

/// Colours of all kinds, among them many greys; the lower half translucent.
Bitmap manyColors(int width = 64, int height = 64) {
    return makeBitmap(width, height, [&](int x, int y) {
        const float alpha = y < height / 2 ? 1 : 0.5f;
        if (y % 8 == 0) return Pixel{float(x * 4) / 255, float(x * 4) / 255, float(x * 4) / 255, alpha};
        return Pixel{float((x * 37 + y * 11) % 256) / 255, float((x * 5 + y * 91) % 256) / 255,
                     float((x * 61 + y * 29) % 256) / 255, alpha};
    });
}

const Bitmap& colors() {
    static const Bitmap bitmap = manyColors();
    return bitmap;
}

/// A filter that reads the colours.
template <typename Filter>
class ReadsColors : public Filter {
  public:
    ReadsColors() { this->setInputImage(MTIImage::imageWithBitmap(colors())); }
    Picture picture() { return render(this->outputImage()); }
    /// Whether it gives the very same image back.
    bool isNeutral() { return this->outputImage() == this->inputImage(); }
};

/// Whether `picture` has the colours that `expected` makes of each pixel's own.
template <typename Expected>
testing::AssertionResult maps(const Picture& picture, double tolerance, Expected&& expected) {
    const Picture before = pictureOf(colors());
    return matchesPixels(picture, tolerance, [&](int x, int y) { return expected(before.at(x, y)); });
}

TEST(QVTileMTIFilter, RepeatsPixelForPixel) {
    const Bitmap bitmap = manyColors(7, 5);
    const Picture tile = pictureOf(bitmap);
    QVTileMTIFilter filter;
    filter.setInputImage(MTIImage::imageWithBitmap(bitmap));
    for (const CGSize size : {CGSize{7, 15}, CGSize{23, 11}, CGSize{4, 3}, CGSize{640.9, 1}}) {
        filter.setOutSize(size);
        const Picture tiled = render(filter.outputImage());
        ASSERT_EQ(tiled.width, int(size.width));
        ASSERT_EQ(tiled.height, int(size.height));
        EXPECT_TRUE(matchesPixels(tiled, 1e-6, [&](int x, int y) { return tile.at(x % 7, y % 5); }));
    }
    for (const CGSize size : {CGSize{}, CGSize{7, 5}}) {
        filter.setOutSize(size);
        EXPECT_EQ(filter.outputImage(), filter.inputImage());
    }
}

TEST(QVTurnBWMTIFilter, MixesInTheGreyOfTheLuma) {
    ReadsColors<QVTurnBWMTIFilter> filter;
    for (const float strength : {1.0f, 0.4f}) {
        filter.setStrength(strength);
        EXPECT_TRUE(maps(filter.picture(), 1e-5, [&](Pixel color) {
            const float grey = lumaOf(color);
            for (std::size_t c = 0; c < 3; ++c) color[c] += (grey - color[c]) * strength;
            return color;
        }));
    }
    filter.setStrength(1);
    filter.setContrast(1);
    EXPECT_TRUE(maps(filter.picture(), 1e-4, [&](Pixel color) {
        const float t = std::clamp((lumaOf(color) / color[3] - 0.16f) / 0.54f, 0.0f, 1.0f);
        color[0] = color[1] = color[2] = t * t * (3 - 2 * t) * color[3];
        return color;
    }));
    filter.setStrength(0);
    EXPECT_TRUE(filter.isNeutral());
}

TEST(QVExposureMTIFilter, MultipliesByPowersOfTwo) {
    ReadsColors<QVExposureMTIFilter> filter;
    EXPECT_TRUE(filter.isNeutral());
    for (const float stops : {0.6f, -1.0f}) {
        filter.setExposure(stops);
        EXPECT_TRUE(maps(filter.picture(), 1e-5, [&](Pixel color) {
            for (std::size_t c = 0; c < 3; ++c) color[c] = std::min(color[c] * std::exp2(stops), color[3]);
            return color;
        }));
    }
}

TEST(QVHueMTIFilter, WholeTurnsAndGreysStay) {
    ReadsColors<QVHueMTIFilter> filter;
    for (const double turns : {0, 1, -1, 3}) {
        filter.setHue(float(turns * 2 * kPi));
        EXPECT_TRUE(filter.isNeutral()) << turns;
    }
    const Bitmap greys = makeBitmap(256, 1, [](int x, int) {
        return Pixel{float(x) / 255, float(x) / 255, float(x) / 255, 1};
    });
    filter.setInputImage(MTIImage::imageWithBitmap(greys));
    filter.setHue(1.3f);
    EXPECT_TRUE(matches(filter.picture(), pictureOf(greys), 1e-5));
}

TEST(QVHueMTIFilter, AThirdOfATurnMovesEachChannelOn) {
    ReadsColors<QVHueMTIFilter> filter;
    filter.setHue(float(2 * kPi / 3));
    filter.setKeepsLuma(false);
    // Red's place in the wheel is taken by green: what was red is green now.
    EXPECT_TRUE(maps(filter.picture(), 1e-5, [](const Pixel& was) {
        return Pixel{was[2], was[0], was[1], was[3]};
    }));
}

TEST(QVHueMTIFilter, KeepsLumaAndTurnsTheHueOfColours) {
    const Picture before = pictureOf(colors());
    const auto turnsOf = [](const Pixel& c) {
        return UIColor(c[0], c[1], c[2]).getHueSaturationBrightnessAlpha().hue;
    };
    ReadsColors<QVHueMTIFilter> filter;
    for (const double hue : {2 * kPi / 3, -2 * kPi / 3, 0.5, 2.0}) {
        filter.setHue(float(hue));
        const Picture after = filter.picture();
        for (int i = 0; i < 64 * 64; ++i) {
            const Pixel was = before.at(i % 64, i / 64), is = after.at(i % 64, i / 64);
            ASSERT_NEAR(lumaOf(is), lumaOf(was), 1e-4) << i;
            const auto [lowest, highest] = std::minmax_element(is.begin(), is.begin() + 3);
            ASSERT_TRUE(*lowest >= -1e-6f && *highest <= is[3] + 1e-6f) << i;
            // The hexagonal hue and the angle about the grey axis differ by up to 1.12 degrees in
            // between, not after thirds of a turn.
            if (*highest - *lowest < 0.1f) continue;
            const double miss = std::remainder(turnsOf(is) - turnsOf(was) - hue / (2 * kPi), 1.0);
            ASSERT_LT(std::abs(miss), 2.3 / 360) << i;
        }
    }
}

/// A table whose entry for (r, g, b) is `entry`'s colour.
Bitmap tableOf(const std::function<Pixel(float r, float g, float b)>& entry) {
    return makeBitmap(512, 512, [&](int x, int y) {
        return entry(float(x % 64) / 63, float(y % 64) / 63, float(y / 64 * 8 + x / 64) / 63);
    });
}

TEST(QVLookupMTIFilter, InterpolatesTheTable) {
    // Not linear in any channel and mixed between them, with a jump between two blue slices.
    const Bitmap table = tableOf([](float r, float g, float b) {
        return Pixel{1 - r * r, g * (b > 0.5f ? 1.0f : 0.25f), std::abs(b - r) * 0.8f, 1};
    });
    auto entry = [&](int r, int g, int b, std::size_t c) {
        return table.row(b / 8 * 64 + g)[std::size_t(b % 8 * 64 + r) * 4 + c] / 255.0;
    };
    // From the corner nearest to black a step along each axis, the longest first, each by its share.
    auto interpolated = [&](const Pixel& color, std::size_t c) {
        int cell[3];
        std::vector<std::pair<double, int>> steps;
        for (int i = 0; i < 3; ++i) {
            const double place = double(color[std::size_t(i)]) * 63;
            cell[i] = std::min(int(place), 62);
            steps.push_back({place - cell[i], i});
        }
        std::sort(steps.rbegin(), steps.rend());
        double sum = entry(cell[0], cell[1], cell[2], c);
        for (const auto& [share, axis] : steps) {
            const double before = entry(cell[0], cell[1], cell[2], c);
            ++cell[axis];
            sum += share * (entry(cell[0], cell[1], cell[2], c) - before);
        }
        return float(sum);
    };
    ReadsColors<QVLookupMTIFilter> filter;
    EXPECT_TRUE(filter.isNeutral()) << "without a table";
    filter.setInputColorLookupTable(MTIImage::imageWithBitmap(table));
    for (const float intensity : {1.0f, 0.3f, 0.0f}) {
        filter.setIntensity(intensity);
        EXPECT_TRUE(maps(filter.picture(), 1.0 / 255,
                         [&](const Pixel& was) {
                             Pixel straight = was, graded = was;
                             for (std::size_t c = 0; c < 3; ++c)
                                 straight[c] = std::min(was[c] / was[3], 1.0f);
                             for (std::size_t c = 0; c < 3; ++c)
                                 graded[c] =
                                     std::lerp(straight[c], interpolated(straight, c), intensity) * was[3];
                             return graded;
                         }))
            << "intensity " << intensity;
    }
}

TEST(QVUnSharpMaskMTIFilter, AddsTheDifferenceToItsGaussian) {
    // A soft stair, translucent in the lower half.
    const Bitmap bitmap = makeBitmap(64, 48, [](int x, int y) {
        const float level = x < 20 ? 0.4f : x < 40 ? 0.5f : 0.62f;
        return Pixel{level, level, 0.2f, y < 24 ? 1.0f : 0.6f};
    });
    const Picture before = pictureOf(bitmap);
    QVUnSharpMaskMTIFilter filter;
    filter.setInputImage(MTIImage::imageWithBitmap(bitmap));
    constexpr double kRadius = 3, kIntensity = 1.5;
    filter.setRadius(kRadius);
    filter.setIntensity(kIntensity);
    const Picture after = render(filter.outputImage());
    // Rows far from the change of alpha are a one-dimensional matter.
    for (const int y : {5, 42}) {
        for (int x = 0; x < 64; ++x) {
            double sum = 0, weights = 0;
            for (int d = -20; d <= 20; ++d) {
                const double weight = std::exp(-d * d / (2 * kRadius * kRadius));
                sum += weight * before.at(std::clamp(x + d, 0, 63), y)[0];
                weights += weight;
            }
            const Pixel here = before.at(x, y);
            const float sharp = float(here[0] + kIntensity * (here[0] - sum / weights));
            EXPECT_LT(difference(after.at(x, y), {sharp, sharp, here[2], here[3]}), 2.0 / 255)
                << x << "," << y;
        }
    }
    filter.setIntensity(0);
    EXPECT_EQ(filter.outputImage(), filter.inputImage());
    filter.setIntensity(3);
    filter.setRadius(0);
    EXPECT_EQ(filter.outputImage(), filter.inputImage());
}

TEST(QVInterlayerFilter, TheLayerLiesBehindTheSubject) {
    const auto imageOf = [](int width, int height, const std::function<Pixel(int x, int y)>& color) {
        return MTIImage::imageWithBitmap(makeBitmap(width, height, color));
    };
    const MTIImage input = imageOf(32, 16, [](int x, int y) {
        return Pixel{float(x) / 32, float(y) / 16, 0.5f, 1};
    });
    // Half transparent magenta in the upper half, at half the size; the mask is red alone, grey in the
    // middle.
    const MTIImage layer = imageOf(16, 8, [](int, int y) { return Pixel{1, 0, 1, y < 4 ? 0.5f : 0}; });
    const MTIImage mask = imageOf(32, 16, [](int x, int) {
        return Pixel{x < 10 ? 0.0f : x < 20 ? 0.4f : 1.0f, 0.7f, 0.1f, 1};
    });
    QVInterlayerFilter filter;
    filter.setInputImage(input);
    const auto rendered = [&](const MTIImage& maskImage, const MTIImage& layerImage) {
        filter.setMaskImage(maskImage);
        filter.setInterlayerImage(layerImage);
        return render(filter.outputImage());
    };
    const Picture before = render(input), both = rendered(mask, layer), layerAlone = rendered({}, layer);
    EXPECT_TRUE(matches(rendered(mask, {}), before, 1.01 / 255)) << "a mask without a layer";
    EXPECT_EQ(worstDifference(rendered({}, {}), before), 0) << "neither";
    for (int x = 0; x < 32; ++x) {
        for (const int y : {2, 13}) {  // away from the layer's interpolated edge
            const float alpha = y < 8 ? 128 / 255.0f : 0, subject = x < 10 ? 0 : x < 20 ? 0.4f : 1;
            const Pixel was = before.at(x, y), color = {1, 0, 1, 1};
            Pixel over = was, behind = was;
            for (std::size_t c = 0; c < 4; ++c) {
                over[c] = std::lerp(was[c], color[c], alpha);
                behind[c] = std::lerp(over[c], was[c], subject);
            }
            EXPECT_LT(difference(layerAlone.at(x, y), over), 1.5 / 255) << x << "," << y;
            EXPECT_LT(difference(both.at(x, y), behind), 2.0 / 255) << x << "," << y;
        }
    }
}

}  // namespace
}  // namespace qv::test
