#include "QVFilterCore/QVFilmNoisyMTIFilter.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "Platform/Foundation/NSCache.h"
#include "Platform/Foundation/Random.h"

namespace qv {

namespace {

using Noisy = QVFilmNoisyMTIFilter;

constexpr double kFramesPerSecond = 24;
constexpr double kGrain = 1.5, kReferenceSide = 1080;
constexpr int kSide = 512;  // of a piece of grain, pixels

using Tones = std::array<float, 3>;

/// Random values about 0 of the cell of a lattice.
Tones cellOf(std::int32_t x, std::int32_t y, std::uint32_t lattice) {
    // A permuted congruential generator of three words (Jarzynski, Olano, "Hash Functions for GPU Rendering",
    // 2020).
    std::array<std::uint32_t, 3> v{std::uint32_t(x), std::uint32_t(y), lattice};
    for (std::uint32_t& word : v) word = word * 1664525u + 1013904223u;
    const auto mixWords = [&v] {
        v[0] += v[1] * v[2];
        v[1] += v[2] * v[0];
        v[2] += v[0] * v[1];
    };
    mixWords();
    for (std::uint32_t& word : v) word ^= word >> 16;
    mixWords();
    Tones tones;
    for (std::size_t c = 0; c < 3; ++c) tones[c] = float(v[c] >> 8) / 16777216.0f - 0.5f;
    return tones;
}

/// Smooth noise about 0 whose spread is the same at the lattice's points and between them, so that the
/// lattice does not show.
Tones grainAt(double x, double y, std::uint32_t lattice) {
    const auto smooth = [](double t) { return float(t * t * (3 - 2 * t)); };
    const double left = std::floor(x), top = std::floor(y);
    const float right = smooth(x - left), down = smooth(y - top);
    const float weights[2][2] = {{(1 - right) * (1 - down), right * (1 - down)},
                                 {(1 - right) * down, right * down}};
    Tones sum{};
    float squares = 0;
    for (int j = 0; j < 2; ++j)
        for (int i = 0; i < 2; ++i) {
            const Tones cell = cellOf(std::int32_t(left) + i, std::int32_t(top) + j, lattice);
            for (std::size_t c = 0; c < 3; ++c) sum[c] += cell[c] * weights[j][i];
            squares += weights[j][i] * weights[j][i];
        }
    for (float& tone : sum) tone /= std::sqrt(squares);
    return sum;
}

/// A piece of grain of two lattices, the coarser one turned against the finer. Where grains are smaller than
/// pixels, each pixel shows several and contrasts less, but not so little that nothing is left.
MTIImage drawnGrain(double trueSize) {
    const double grainSize = std::max(1.0, trueSize);
    const float contrast = float(std::clamp(std::pow(trueSize, 0.4), 0.64, 1.0));
    auto pixels = std::make_shared<std::vector<std::uint8_t>>();
    pixels->reserve(std::size_t(kSide) * kSide * 4);
    for (int py = 0; py < kSide; ++py)
        for (int px = 0; px < kSide; ++px) {
            const double x = (px + 0.5) / grainSize, y = (py + 0.5) / grainSize;
            const Tones fine = grainAt(x, y, 0);
            const Tones coarse = grainAt((0.8 * x - 0.6 * y) / 2.27, (0.6 * x + 0.8 * y) / 2.27, 1);
            Tones sum;
            for (std::size_t c = 0; c < 3; ++c) sum[c] = contrast * (fine[c] * 0.65f + coarse[c] * 0.55f);
            const float grey = 0.5f + (sum[0] + sum[1] + sum[2]) / 3;
            for (const float tone : sum)
                pixels->push_back(
                    std::uint8_t(std::lround(255 * std::clamp(grey + tone * 0.15f, 0.0f, 1.0f))));
            pixels->push_back(255);
        }
    return MTIImage::imageWithBitmap({kSide, kSide, std::move(pixels)}, MTIAlphaType::alphaIsOne);
}

/// The piece for grains of this size, pixels. A few sizes are kept: a preview's, an export's.
MTIImage pieceOfGrain(double grainSize) {
    static auto& cache = *new NSCache<double, MTIImage>(4);
    return cache.objectForKey(grainSize, [&] { return drawnGrain(grainSize); });
}

}  // namespace

const QVFilterClass QVFilmNoisyMTIFilterClass{
    .name = "QVFilmNoisyMTIFilter",
    .superclass = &QVMTIOneInputFilterClass,
    .title = "Film grain",
    .help = "A layer of film grain, to be overlaid on the picture",
    .tags = {"noise", "texture", "analog", "overlay", "vintage"},
    .factory = makeFilter<QVFilmNoisyMTIFilter>,
    .category = QVFilterCategory::film,
    .properties =
        {
            qvProperty<&Noisy::iTime, &Noisy::setITime>({
                .name = "iTime",
                .title = "Time",
                .help = "when; the same time gives the same grain",
                .minimum = -kUnlimited,
                .maximum = kUnlimited,
                .unit = QVUnit::seconds,
                .driver = QVPropertyDriver::host,
            }),
            qvProperty<&Noisy::opacity, &Noisy::setOpacity>({
                .name = "opacity",
                .help = "strength of the grain",
                .unit = QVUnit::fraction,
            }),
        },
};

MTIParameters QVFilmNoisyMTIFilter::parameters() const {
    // Frame numbers repeat after eight days of film, long before they stop being exact.
    constexpr double kFrames = 1 << 24;
    const double frame =
        std::isfinite(iTime_) ? std::fmod(std::floor(iTime_ * kFramesPerSecond), kFrames) : 0;
    const auto draw = std::uint32_t(randomFromSeed(std::uint32_t(std::int32_t(frame)) + 1));
    const auto bits = [draw](int first, int count) {
        return std::int32_t(draw >> first & ((1u << count) - 1));
    };
    return {{"shiftX", bits(0, 9)},
            {"shiftY", bits(9, 9)},
            {"turnX", 1 - 2 * bits(18, 1)},
            {"turnY", 1 - 2 * bits(19, 1)},
            {"opacity", opacity_}};
}

MTIImage QVFilmNoisyMTIFilter::outputImage() {
    if (!inputImage()) return {};
    const CGSize size = inputImage().size();
    const double grain = kGrain * std::min(size.width, size.height) / kReferenceSide;
    return applyKernel({inputImage(), pieceOfGrain(grain)}, parameters());
}

}  // namespace qv
