#include "Platform/Media/PixelConversion.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <random>
#include <vector>

#include "Platform/Media/Bitmap.h"
#include "Platform/Media/Private/PixelBlocks.h"
#include "Tests/Support/VideoStandard.h"

namespace qv {
namespace {

constexpr ColorMatrix kMatrices[] = {ColorMatrix::bt601, ColorMatrix::bt709, ColorMatrix::bt2020};

int sampleAt(const PixelBuffer& buffer, int plane, int x, int y) {
    if (buffer.format() == PixelFormat::nv12 && plane > 0) {
        return buffer.plane(1)
            .data[std::size_t(y) * buffer.plane(1).rowBytes + std::size_t(x * 2 + plane - 1)];
    }
    const std::uint8_t* row = buffer.plane(plane).data + std::size_t(y) * buffer.plane(plane).rowBytes;
    if (PixelBuffer::bitDepth(buffer.format()) == 8) return row[x];
    std::uint16_t value;
    std::memcpy(&value, row + x * 2, 2);
    return value;
}

bool halved(PixelFormat format, bool down) {
    const PlaneLayout chroma = PixelBuffer::planeLayout(format, 1, 2, 2);
    return (down ? chroma.height : chroma.width) == 1;
}

/// Two chroma samples and the weight of the second, for a luma position. Samples lie in the middle of their
/// pair; the last one of an odd size covers one pixel and lies on it.
struct Tap {
    int first, second;
    double weight;
};
Tap tapAt(int position, int size, bool halves) {
    if (!halves) return {position, position, 0};
    const int count = (size + 1) / 2;
    if (position == 0 || (position == size - 1 && size % 2)) return {position / 2, position / 2, 0};
    const double place = (position - 0.5) / 2;
    const int first = int(std::floor(place));
    return {first, std::min(first + 1, count - 1), place - first};
}

double chromaAt(const PixelBuffer& buffer, int plane, int x, int y) {
    const Tap across = tapAt(x, buffer.width(), halved(buffer.format(), false));
    const Tap down = tapAt(y, buffer.height(), halved(buffer.format(), true));
    const auto rowAt = [&](int row) {
        return sampleAt(buffer, plane, across.first, row) * (1 - across.weight) +
               sampleAt(buffer, plane, across.second, row) * across.weight;
    };
    return rowAt(down.first) * (1 - down.weight) + rowAt(down.second) * down.weight;
}

void fillRandom(const PixelBuffer& buffer, unsigned seed) {
    std::mt19937 random(seed);
    const int bits = PixelBuffer::bitDepth(buffer.format());
    for (int p = 0; p < PixelBuffer::planeCount(buffer.format()); ++p) {
        const PlaneLayout layout =
            PixelBuffer::planeLayout(buffer.format(), p, buffer.width(), buffer.height());
        for (int y = 0; y < layout.height; ++y) {
            std::uint8_t* row = buffer.plane(p).data + std::size_t(y) * buffer.plane(p).rowBytes;
            for (int x = 0; x < layout.width * layout.bytesPerSample; ++x) {
                row[x] = std::uint8_t(random());
                if (bits == 10 && x % 2) row[x] &= 3;
            }
        }
    }
}

std::vector<std::uint8_t> randomPicture(int width, int height, bool opaque, unsigned seed) {
    std::mt19937 random(seed);
    std::vector<std::uint8_t> rgba(std::size_t(width) * std::size_t(height) * 4);
    for (std::size_t i = 0; i < rgba.size(); i += 4) {
        rgba[i + 3] = opaque ? 255 : std::uint8_t(random());
        for (std::size_t c = 0; c < 3; ++c) rgba[i + c] = std::uint8_t(random() % (rgba[i + 3] + 1u));
    }
    return rgba;
}

// Sizes with a last half pair in each direction, one too small for any SIMD loop, and one that is split over
// threads.
constexpr std::pair<int, int> kSizes[] = {{1, 1}, {2, 3}, {37, 18}, {641, 361}, {96, 2}};

// Rounding's half and 0.15 for the fixed point.
constexpr double kTolerance = 0.65;

TEST(PixelConversion, decodesByTheFormulas) {
    for (PixelFormat format : test::kYUVFormats) {
        for (ColorMatrix matrix : kMatrices) {
            for (bool fullRange : {false, true}) {
                for (auto [width, height] : kSizes) {
                    const ColorDescription color{matrix, fullRange};
                    const PixelBuffer source = PixelBuffer::create(format, width, height, color);
                    fillRandom(source, unsigned(width));
                    const std::size_t rowBytes = std::size_t(width) * 4 + 12;
                    std::vector<std::uint8_t> rgba(rowBytes * std::size_t(height), 77);
                    ASSERT_TRUE(convertToRGBA8(source, rgba.data(), rowBytes));

                    const test::VideoStandard standard(color, PixelBuffer::bitDepth(format));
                    double worst = 0;
                    for (int y = 0; y < height; ++y) {
                        const std::uint8_t* row = &rgba[std::size_t(y) * rowBytes];
                        for (int x = 0; x < width; ++x) {
                            const auto expected =
                                standard.toRGB(sampleAt(source, 0, x, y), chromaAt(source, 1, x, y),
                                               chromaAt(source, 2, x, y));
                            const int alpha =
                                format == PixelFormat::i420Alpha ? sampleAt(source, 3, x, y) : 255;
                            ASSERT_EQ(row[x * 4 + 3], alpha);
                            for (std::size_t c = 0; c < 3; ++c) {
                                worst = std::max(
                                    worst, std::abs(row[std::size_t(x) * 4 + c] - expected[c] * alpha / 255));
                            }
                        }
                        ASSERT_EQ(row[width * 4], 77) << "written past the row";
                    }
                    // Premultiplying rounds a second time.
                    EXPECT_LE(worst, format == PixelFormat::i420Alpha ? 2 * kTolerance : kTolerance)
                        << "format " << int(format) << " matrix " << int(matrix) << " full " << fullRange
                        << " " << width << "x" << height;
                }
            }
        }
    }
}

TEST(PixelConversion, encodesByTheFormulas) {
    for (PixelFormat format : test::kYUVFormats) {
        if (format == PixelFormat::i420Alpha) continue;
        for (ColorMatrix matrix : kMatrices) {
            for (bool fullRange : {false, true}) {
                for (auto [width, height] : kSizes) {
                    const ColorDescription color{matrix, fullRange};
                    const auto rgba = randomPicture(width, height, true, unsigned(height));
                    const PixelBuffer result = PixelBuffer::create(format, width, height, color);
                    ASSERT_TRUE(convertFromRGBA8(rgba.data(), std::size_t(width) * 4, result));

                    const test::VideoStandard standard(color, PixelBuffer::bitDepth(format));
                    const auto meanAt = [&](int x0, int y0, int x1, int y1) {
                        std::array<double, 3> sum{};
                        int count = 0;
                        for (int y = y0; y < std::min(y1, height); ++y) {
                            for (int x = x0; x < std::min(x1, width); ++x, ++count) {
                                for (std::size_t c = 0; c < 3; ++c)
                                    sum[c] += rgba[std::size_t((y * width + x) * 4) + c];
                            }
                        }
                        for (double& s : sum) s /= count;
                        return standard.toYUV(sum);
                    };
                    double worst = 0;
                    for (int plane = 0; plane < 3; ++plane) {
                        const int across = plane && halved(format, false) ? 2 : 1;
                        const int down = plane && halved(format, true) ? 2 : 1;
                        for (int y = 0; y < (height + down - 1) / down; ++y) {
                            for (int x = 0; x < (width + across - 1) / across; ++x) {
                                const auto exact =
                                    meanAt(x * across, y * down, (x + 1) * across, (y + 1) * down);
                                const double expected =
                                    std::clamp(exact[std::size_t(plane)], 0.0, standard.maximum);
                                worst = std::max(worst, std::abs(sampleAt(result, plane, x, y) - expected));
                            }
                        }
                    }
                    EXPECT_LE(worst, kTolerance) << "format " << int(format) << " matrix " << int(matrix)
                                                 << " full " << fullRange << " " << width << "x" << height;
                }
            }
        }
    }
}

// The formulas above hold for the best instruction set that the machine has.
TEST(PixelConversion, everyInstructionSetGivesTheBytesOfTheLoops) {
    std::mt19937 random(9);
    const auto fill = [&](auto& samples, unsigned end) {
        for (auto& sample : samples) sample = std::uint8_t(random() % end);
    };
    for (const rows::BlockFunctions& blocks : rows::blockFunctions()) {
        for (int width = 1; width < 200; ++width) {
            const ColorDescription color{kMatrices[width % 3], width % 2 == 0};
            const auto pixels = std::size_t(width), samples = (pixels + 1) / 2;
            std::vector<std::uint8_t> luma(pixels), near(samples), far(samples), rgba(pixels * 4 + 1, 7),
                expected;
            std::vector<std::uint16_t> line(samples + 2 * rows::kLineMargin);
            std::vector<std::int16_t> wide(pixels);
            fill(luma, 256), fill(near, 256), fill(far, 256);
            std::uint16_t* const first = line.data() + rows::kLineMargin;
            rows::blendChromaRows(near.data(), far.data(), first, int(samples));
            first[-1] = first[0], first[samples] = first[samples - 1];
            rows::widenChroma(first, wide.data(), width, 8);
            expected = rgba;
            const auto decoding = rows::decodeFactors(color, 8);
            rows::toRGBA(luma.data(), wide.data(), wide.data(), decoding, expected.data(), width);
            blocks.toRGBA(luma.data(), first, first, decoding, rgba.data(), width);
            ASSERT_EQ(rgba, expected) << width;

            for (int height : {1, 2}) {
                std::vector<std::uint8_t> picture(pixels * 8);
                fill(picture, 256);
                // Luma of two rows, then chroma, each with a byte behind it that stays.
                std::vector<std::uint8_t> planes[4], loops[4];
                for (std::size_t i = 0; i < 4; ++i) planes[i].assign((i < 2 ? pixels : samples) + 1, 7);
                std::copy(planes, planes + 4, loops);
                const auto encoding = rows::encodeFactors(color, 8);
                std::vector<std::int16_t> channels[3], below[3], sums[3];
                for (std::size_t c = 0; c < 3; ++c)
                    channels[c].resize(pixels), below[c].resize(pixels), sums[c].resize(samples);
                rows::splitRGBA(picture.data(), channels[0].data(), channels[1].data(), channels[2].data(),
                                width);
                rows::toLuma(channels[0].data(), channels[1].data(), channels[2].data(), encoding,
                             loops[0].data(), width);
                if (height == 2) {
                    rows::splitRGBA(&picture[pixels * 4], below[0].data(), below[1].data(), below[2].data(),
                                    width);
                    rows::toLuma(below[0].data(), below[1].data(), below[2].data(), encoding, loops[1].data(),
                                 width);
                }
                for (std::size_t c = 0; c < 3; ++c) {
                    rows::addRow(channels[c].data(), below[c].data(), width);
                    rows::addPairs(channels[c].data(), sums[c].data(), width);
                }
                rows::toChroma(sums[0].data(), sums[1].data(), sums[2].data(), height, encoding.u,
                               loops[2].data(), int(samples));
                rows::toChroma(sums[0].data(), sums[1].data(), sums[2].data(), height, encoding.v,
                               loops[3].data(), int(samples));
                blocks.fromRGBA(picture.data(), height == 2 ? &picture[pixels * 4] : nullptr, encoding,
                                planes[0].data(), height == 2 ? planes[1].data() : nullptr, planes[2].data(),
                                planes[3].data(), width);
                for (std::size_t i = 0; i < 4; ++i) ASSERT_EQ(planes[i], loops[i]) << width << " plane " << i;
            }
        }
    }
}

TEST(PixelConversion, alphaIsStraightInStoreAndPremultipliedInPictures) {
    const int width = 300, height = 40;
    const auto rgba = randomPicture(width, height, false, 5);
    const PixelBuffer straight = PixelBuffer::create(PixelFormat::rgba8, width, height);
    ASSERT_TRUE(convertFromRGBA8(rgba.data(), std::size_t(width) * 4, straight));
    const PixelBuffer planes = PixelBuffer::create(PixelFormat::i420Alpha, width, height);
    ASSERT_TRUE(convertFromRGBA8(rgba.data(), std::size_t(width) * 4, planes));
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const std::uint8_t* in = &rgba[std::size_t(y * width + x) * 4];
            const std::uint8_t* out =
                straight.plane(0).data + std::size_t(y) * straight.plane(0).rowBytes + std::size_t(x) * 4;
            ASSERT_EQ(out[3], in[3]);
            ASSERT_EQ(sampleAt(planes, 3, x, y), in[3]);
            for (int c = 0; c < 3; ++c) ASSERT_EQ(out[c], in[3] ? std::lround(in[c] * 255.0 / in[3]) : 0);
        }
    }
    std::vector<std::uint8_t> back(rgba.size());
    ASSERT_TRUE(convertToRGBA8(straight, back.data(), std::size_t(width) * 4));
    EXPECT_EQ(back, rgba);

    // Luma of straight colour: white at half strength is stored as white.
    const std::vector<std::uint8_t> veil(16, 128);
    const PixelBuffer small = PixelBuffer::create(PixelFormat::i420Alpha, 2, 2, {ColorMatrix::bt709, false});
    ASSERT_TRUE(convertFromRGBA8(veil.data(), 8, small));
    EXPECT_EQ(sampleAt(small, 0, 0, 0), 235);
    EXPECT_EQ(sampleAt(small, 3, 1, 1), 128);
}

TEST(PixelConversion, greyPictures) {
    const PixelBuffer gray = PixelBuffer::create(PixelFormat::gray8, 33, 3, {ColorMatrix::bt601, false});
    fillRandom(gray, 3);
    std::vector<std::uint8_t> rgba(33 * 3 * 4);
    ASSERT_TRUE(convertToRGBA8(gray, rgba.data(), 33 * 4));
    for (int i = 0; i < 33 * 3 * 4; ++i) {
        ASSERT_EQ(rgba[std::size_t(i)], i % 4 == 3 ? 255 : sampleAt(gray, 0, i / 4 % 33, i / 4 / 33));
    }
    const PixelBuffer back = PixelBuffer::create(PixelFormat::gray8, 33, 3, {ColorMatrix::bt601, false});
    ASSERT_TRUE(convertFromRGBA8(rgba.data(), 33 * 4, back));
    for (int y = 0; y < 3; ++y) {
        EXPECT_EQ(std::memcmp(back.plane(0).data + std::size_t(y) * back.plane(0).rowBytes,
                              gray.plane(0).data + std::size_t(y) * gray.plane(0).rowBytes, 33),
                  0);
    }
}

TEST(PixelConversion, refusesNothingToWorkOn) {
    std::vector<std::uint8_t> rgba(64);
    const PixelBuffer frame = PixelBuffer::create(PixelFormat::i420, 4, 4);
    EXPECT_FALSE(convertToRGBA8({}, rgba.data(), 16));
    EXPECT_FALSE(convertToRGBA8(frame, rgba.data(), 15));
    EXPECT_FALSE(convertFromRGBA8(nullptr, 16, frame));
    for (auto [width, height] : {std::pair{0, 4}, {4, -1}, {kMaximumImageSide + 1, 4}}) {
        EXPECT_FALSE(PixelBuffer::create(PixelFormat::rgba8, width, height));
    }
}

}  // namespace
}  // namespace qv
