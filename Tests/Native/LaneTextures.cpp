// Texels that are read, mixed and written, against the formulas of each format at every pixel.

#include <gmock/gmock.h>

#include <bit>
#include <cmath>
#include <limits>
#include <random>

#include "Tests/Native/LaneKernel.h"

namespace qv::native::test {
namespace {

constexpr TextureFormat kFormats[] = {
    TextureFormat::rgba8, TextureFormat::bgra8,       TextureFormat::r8,         TextureFormat::rg8,
    TextureFormat::r16,   TextureFormat::rgba16Float, TextureFormat::rgba32Float};
constexpr int kWidth = 53, kHeight = 19;

float halfValue(std::uint16_t bits) {
    const int exponent = bits >> 10 & 31, fraction = bits & 1023;
    const float size =
        exponent ? std::ldexp(float(1024 + fraction), exponent - 25) : std::ldexp(float(fraction), -24);
    return bits >> 15 ? -size : size;
}

/// Random texels; the floats are −4..4.
Image noise(TextureFormat format, int width = kWidth, int height = kHeight) {
    Image image(format, width, height);
    std::mt19937 random(1);
    for (int y = 0; y < height; ++y) {
        for (int i = 0; i < width * texelBytes(format); ++i) {
            if (format == TextureFormat::rgba32Float) {
                if (i % 4 == 0) image.row<float>(y)[i / 4] = float(random() % 8193) / 1024 - 4;
            } else if (format == TextureFormat::rgba16Float) {
                if (i % 2 == 0)
                    image.row<std::uint16_t>(y)[i / 2] = std::uint16_t(random() & 0xC3FF) % 0xC400;
            } else {
                image.row<std::uint8_t>(y)[i] = std::uint8_t(random());
            }
        }
    }
    return image;
}

using Texel = std::array<double, 4>;

Texel texel(Image& image, int x, int y) {
    x = std::clamp(x, 0, image.width() - 1);
    y = std::clamp(y, 0, image.height() - 1);
    const std::uint8_t* const bytes = image.row<std::uint8_t>(y) + x * texelBytes(image.format());
    const auto* const words = reinterpret_cast<const std::uint16_t*>(bytes);
    const auto* const floats = reinterpret_cast<const float*>(bytes);
    switch (image.format()) {
        case TextureFormat::rgba8:
            return {bytes[0] / 255.0, bytes[1] / 255.0, bytes[2] / 255.0, bytes[3] / 255.0};
        case TextureFormat::bgra8:
            return {bytes[2] / 255.0, bytes[1] / 255.0, bytes[0] / 255.0, bytes[3] / 255.0};
        case TextureFormat::r8:
            return {bytes[0] / 255.0, 0, 0, 1};
        case TextureFormat::rg8:
            return {bytes[0] / 255.0, bytes[1] / 255.0, 0, 1};
        case TextureFormat::r16:
            return {words[0] / 65535.0, 0, 0, 1};
        case TextureFormat::rgba16Float:
            return {halfValue(words[0]), halfValue(words[1]), halfValue(words[2]), halfValue(words[3])};
        case TextureFormat::rgba32Float:
            break;
    }
    return {floats[0], floats[1], floats[2], floats[3]};
}

Texel bilinear(Image& image, double u, double v) {
    const double x = std::clamp(u * image.width() - 0.5, 0.0, image.width() - 1.0);
    const double y = std::clamp(v * image.height() - 0.5, 0.0, image.height() - 1.0);
    const int left = int(x), top = int(y);
    Texel sum{};
    for (int i = 0; i < 4; ++i) {
        const double weight = (i % 2 ? x - left : 1 - (x - left)) * (i / 2 ? y - top : 1 - (y - top));
        const Texel part = texel(image, left + i % 2, top + i / 2);
        for (std::size_t c = 0; c < 4; ++c) sum[c] += weight * part[c];
    }
    return sum;
}

Value* shifted(const Group& group, Value* value, int by) {
    return group.ir.CreateAdd(value,
                              llvm::ConstantInt::get(value->getType(), std::uint64_t(std::int64_t(by))));
}

/// A way to read the texel at (x + dx, y + dy).
struct Way {
    const char* name;
    int dx, dy;
    std::function<Color(const Group&, const TextureOperands&)> read;
};

std::vector<Way> ways() {
    std::vector<Way> list;
    list.push_back({"known to be inside", 0, 0, [](const Group& g, const TextureOperands& t) {
                        return fetchTexel(g.ir, t, g.lanes(), g.y, g.x, true);
                    }});
    for (const auto& [dx, dy] : {std::pair{0, 0}, {5, -2}, {-19, 3}, {400, 400}, {-400, -400}}) {
        list.push_back({"a row", dx, dy, [=](const Group& g, const TextureOperands& t) {
                            return fetchTexel(g.ir, t, shifted(g, g.lanes(), dx), shifted(g, g.y, dy),
                                              shifted(g, g.x, dx), false);
                        }});
        list.push_back({"gathered", dx, dy, [=](const Group& g, const TextureOperands& t) {
                            return fetchTexel(g.ir, t, shifted(g, g.lanes(), dx),
                                              spread(g.ir, shifted(g, g.y, dy)), nullptr, false);
                        }});
    }
    return list;
}

void expectTexels(Image& result, const std::function<Texel(int, int)>& expected, double tolerance,
                  const std::string& what) {
    double most = 0;
    for (int y = 0; y < result.height(); ++y) {
        for (int x = 0; x < result.width(); ++x) {
            const Texel want = expected(x, y);
            const float* const got = result.row<float>(y) + 4 * x;
            for (std::size_t c = 0; c < 4; ++c) most = std::max(most, std::abs(want[c] - double(got[c])));
            ASSERT_LE(most, tolerance) << what << " at " << x << ", " << y;
        }
    }
}

TEST(LaneTextures, FetchesEveryFormat) {
    for (NativeTarget target : runnableTargets()) {
        for (TextureFormat format : kFormats) {
            Image input = noise(format);
            for (const Way& way : ways()) {
                const auto kernel = kernelOf(target, TextureFormat::rgba32Float, [&](const Group& group) {
                    return way.read(group, group.input(0, format));
                });
                Image result(TextureFormat::rgba32Float, kWidth, kHeight);
                draw(*kernel, {&input}, result);
                expectTexels(
                    result, [&](int x, int y) { return texel(input, x + way.dx, y + way.dy); }, 1e-7,
                    fmt::format("{}, format {}, {}", nativeTargetName(target), int(format), way.name));
            }
        }
    }
}

TEST(LaneTextures, FetchesForAllLanesAtOnce) {
    for (NativeTarget target : runnableTargets()) {
        for (TextureFormat format : kFormats) {
            Image input = noise(format), result(TextureFormat::rgba32Float, kWidth, kHeight);
            const auto kernel = kernelOf(target, TextureFormat::rgba32Float, [&](const Group& group) {
                return fetchTexel(group.ir, group.input(0, format), group.ir.getInt32(3), group.y, nullptr,
                                  false);
            });
            draw(*kernel, {&input}, result);
            expectTexels(
                result, [&](int, int y) { return texel(input, 3, y); }, 1e-7, "uniform");
        }
    }
}

/// Coordinates as floats in an image: red u, green v.
Image places(const std::function<std::pair<float, float>(int, int)>& place) {
    Image image(TextureFormat::rgba32Float, kWidth, kHeight);
    for (int y = 0; y < kHeight; ++y) {
        for (int x = 0; x < kWidth; ++x) {
            std::tie(image.row<float>(y)[4 * x], image.row<float>(y)[4 * x + 1]) = place(x, y);
        }
    }
    return image;
}

TEST(LaneTextures, SamplesBetweenTexels) {
    std::mt19937 random(2);
    std::uniform_real_distribution<float> anywhere(-0.2f, 1.2f);
    std::vector<Image> all;
    all.push_back(places([](int x, int y) { return std::pair((x + 0.5f) / kWidth, (y + 0.5f) / kHeight); }));
    all.push_back(places([](int x, int y) { return std::pair((x + 3.3f) / kWidth, (y - 1.9f) / kHeight); }));
    all.push_back(places([&](int, int) { return std::pair(anywhere(random), anywhere(random)); }));
    // Enlarged, and mirrored.
    all.push_back(
        places([](int x, int y) { return std::pair((0.4f * x + 0.6f) / kWidth, (y + 0.3f) / kHeight); }));
    all.push_back(
        places([](int x, int y) { return std::pair((kWidth - 0.9f * x) / kWidth, (y - 0.2f) / kHeight); }));
    for (TextureFormat format : kFormats) {
        Image input = noise(format);
        std::vector<Image> results;
        for (NativeTarget target : runnableTargets()) {
            const auto kernel = kernelOf(target, TextureFormat::rgba32Float, [&](const Group& group) {
                const Color place = group.floats(1);
                return sampleTexture(group.ir, group.input(0, format), place[0], place[1]);
            });
            for (std::size_t i = 0; i < all.size(); ++i) {
                Image& at = all[i];
                Image& result = results.emplace_back(TextureFormat::rgba32Float, kWidth, kHeight);
                draw(*kernel, {&input, &at}, result);
                // Four bytes are mixed by steps of 1/512 of a texel, in both directions. What is mixed in
                // floats goes by the whole place, but near middles, which none of the shifted places is.
                const bool isFloat =
                    format == TextureFormat::rgba16Float || format == TextureFormat::rgba32Float;
                const bool isFine = i == 1 && texelBytes(format) != 4;
                const double largest = isFloat ? 8 : 1;
                expectTexels(
                    result,
                    [&](int x, int y) {
                        if (i == 0) return texel(input, x, y);
                        return bilinear(input, at.row<float>(y)[4 * x], at.row<float>(y)[4 * x + 1]);
                    },
                    i == 0 ? 1e-7 : largest * (isFine ? 2e-5 : 0.5 / 255),
                    fmt::format("format {}, places {}", int(format), i));
                EXPECT_TRUE(result == results[i]) << "targets differ";
            }
        }
    }
}

TEST(LaneTextures, SamplesForAllLanesAsForEach) {
    for (NativeTarget target : runnableTargets()) {
        for (TextureFormat format : kFormats) {
            Image input = noise(format), one(TextureFormat::rgba32Float, kWidth, kHeight), each = one;
            const auto body = [&](bool varying) {
                return [=](const Group& group) {
                    llvm::Type* const type = group.ir.getFloatTy();
                    Value *u = group.word(0, type), *v = group.word(1, type);
                    if (varying) u = spread(group.ir, u);
                    return sampleTexture(group.ir, group.input(0, format), u, v);
                };
            };
            const std::vector<std::uint32_t> words{std::bit_cast<std::uint32_t>(0.377f),
                                                   std::bit_cast<std::uint32_t>(0.614f)};
            draw(*kernelOf(target, TextureFormat::rgba32Float, body(false)), {&input}, one, words);
            draw(*kernelOf(target, TextureFormat::rgba32Float, body(true)), {&input}, each, words);
            EXPECT_TRUE(one == each);
            expectTexels(
                one, [&](int, int) { return bilinear(input, 0.377f, 0.614f); }, 8 * 0.5 / 255, "one place");
        }
    }
}

TEST(LaneTextures, NothingOutsideIsSeen) {
    // What lies behind the border is not a number where a format can say so.
    Image input(TextureFormat::rgba32Float, 16, 1);
    for (int i = 0; i < 4 * (16 + kKernelLanes); ++i) {
        input.row<float>(0)[i] = i < 64 ? 0.5f : std::numeric_limits<float>::quiet_NaN();
    }
    for (int i = 0; i < 4 * (16 + kKernelLanes); ++i)
        input.row<float>(1)[i] = std::numeric_limits<float>::quiet_NaN();
    Image at = places([](int x, int y) {
        const float infinite = std::numeric_limits<float>::infinity();
        if (y == 0) return std::pair(infinite, -infinite);
        if (y == 1) return std::pair(std::numeric_limits<float>::quiet_NaN(), 1e30f);
        return std::pair(float(x) / kWidth * 2, 1.0f);
    });
    for (NativeTarget target : runnableTargets()) {
        const auto kernel = kernelOf(target, TextureFormat::rgba32Float, [&](const Group& group) {
            const Color place = group.floats(1);
            return sampleTexture(group.ir, group.input(0, TextureFormat::rgba32Float), place[0], place[1]);
        });
        Image result(TextureFormat::rgba32Float, kWidth, kHeight);
        draw(*kernel, {&input, &at}, result);
        expectTexels(
            result,
            [](int, int) {
                return Texel{0.5, 0.5, 0.5, 0.5};
            },
            0, nativeTargetName(target));
    }
}

TEST(LaneTextures, StoresRoundedAndClamped) {
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    Image colors(TextureFormat::rgba32Float, kWidth, kHeight);
    const float special[] = {-kInfinity, kInfinity, std::numeric_limits<float>::quiet_NaN(),
                             -0.0f,      1e30f,     -1e30f};
    std::mt19937 random(3);
    for (int y = 0; y < kHeight; ++y) {
        for (int i = 0; i < 4 * kWidth; ++i) {
            colors.row<float>(y)[i] = y == 0 ? special[i % 6] : float(random() % 4097) / 2048 - 0.5f;
        }
    }
    for (NativeTarget target : runnableTargets()) {
        for (TextureFormat format : kFormats) {
            const auto kernel = kernelOf(target, format, [](const Group& group) { return group.floats(0); });
            Image result(format, kWidth, kHeight);
            draw(*kernel, {&colors}, result);
            const int channels = format == TextureFormat::r8 || format == TextureFormat::r16 ? 1
                                 : format == TextureFormat::rg8                              ? 2
                                                                                             : 4;
            const double steps = format == TextureFormat::r16 ? 65535 : 255;
            for (int y = 0; y < kHeight; ++y) {
                for (int x = 0; x < kWidth; ++x) {
                    const Texel got = texel(result, x, y);
                    for (int c = 0; c < channels; ++c) {
                        const double value = colors.row<float>(y)[4 * x + c];
                        if (format == TextureFormat::rgba32Float || format == TextureFormat::rgba16Float) {
                            if (y > 0) {
                                ASSERT_NEAR(got[std::size_t(c)], value, 0.0005) << int(format);
                            }
                            continue;
                        }
                        const double known = std::isnan(value) ? 0 : std::clamp(value, 0.0, 1.0);
                        ASSERT_EQ(std::nearbyint(got[std::size_t(c)] * steps), std::nearbyint(known * steps))
                            << nativeTargetName(target) << ", format " << int(format) << ", " << value;
                    }
                }
            }
        }
    }
}

}  // namespace
}  // namespace qv::native::test
