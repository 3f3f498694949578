#include "QVFilterExtension/MTIFilters/Effect/Film/FilmSprites.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "Platform/Foundation/Random.h"
#include "QVFilterExtension/Private/RandomSeed.h"
#include "QVFilterExtension/Private/SmoothStep.h"

namespace qv {

namespace {

constexpr double kSlot = 0.1;  // seconds
constexpr double kFadeIn = kSlot * 0.1, kFadeOutAt = 0.09, kFadeOut = kSlot - kFadeOutAt;
constexpr double kTurn = 6.283185307179586;
constexpr double kReferenceSide = 1080;

/// What sets the draws of one slot of one copy apart.
enum Offset { kVisibility, kSize, kRotation, kX, kY };
constexpr double kOffsets[] = {238.27, 19.36, 39.21, 56.91, 63.68};

/// One copy at a moment; nothing is appended in a slot in which it is not seen.
void append(std::vector<SpiritParam>& sprites, const FilmSpriteKind& kind, int number, int count, double time,
            double heightPerWidth, bool isStill,
            const std::function<SpiritParam::Texture(const std::string&)>& textureNamed) {
    const double t = time + number * 0.1 / (count + 2);
    const double slot = std::floor(t / kSlot);
    const double base = slot + 9999.0 * number;
    const auto draw = [&](Offset offset) { return filmDraw(base + kOffsets[offset]); };
    if (!isStill && draw(kVisibility) > kind.visibleShare) return;

    const double size = (kind.sizeSpan * draw(kSize) + kind.leastSize) / kReferenceSide * kind.scale;
    const double angle = kind.standsUpright ? 0 : draw(kRotation) * kTurn;
    const double x = 2 * (draw(kX) - 0.5), y = 2 * (draw(kY) - 0.5) * heightPerWidth;
    const CGAffineTransform transform = CGAffineTransformConcat(
        CGAffineTransformConcat(CGAffineTransformMakeScale(size, size), CGAffineTransformMakeRotation(angle)),
        CGAffineTransformMakeTranslation(x, y));

    const double inside = t - slot * kSlot;
    const double alpha =
        isStill ? 1 : smoothStep(inside / kFadeIn) - smoothStep((inside - kFadeOutAt) / kFadeOut);
    const auto pick = std::uint32_t(randomFromSeed(randomSeedFromDouble(base) * 9527u + 704998u));
    sprites.push_back(SpiritParam::paramWithTrans(transform, float(alpha * kind.alpha),
                                                  textureNamed(kind.names[pick % kind.names.size()])));
}

}  // namespace

std::vector<SpiritParam> filmSprites(
    std::span<const FilmSpriteKind> kinds, double time, double heightPerWidth, bool isStill,
    const std::function<SpiritParam::Texture(const std::string&)>& textureNamed) {
    if (!std::isfinite(time)) time = 0;
    int count = 0;
    for (const FilmSpriteKind& kind : kinds) count += std::max(kind.count, 0);
    std::vector<SpiritParam> sprites;
    int number = 0;
    for (const FilmSpriteKind& kind : kinds)
        for (int i = 0; i < kind.count; ++i)
            append(sprites, kind, ++number, count, time, heightPerWidth, isStill, textureNamed);
    return sprites;
}

double filmDraw(double seed) {
    return randomUnitFromSeed(randomSeedFromDouble(seed));
}

std::vector<std::string> numberedNames(const std::string& prefix, int count, int digits,
                                       const std::string& suffix) {
    std::vector<std::string> names;
    for (int i = 0; i < count; ++i) names.push_back(fmt::format("{}{:0{}d}{}", prefix, i, digits, suffix));
    return names;
}

}  // namespace qv
