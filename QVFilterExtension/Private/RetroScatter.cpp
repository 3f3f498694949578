#include "QVFilterExtension/Private/RetroScatter.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "QVFilterExtension/Private/RandomSeed.h"
#include "QVFilterExtension/Private/SmoothStep.h"

namespace qv {

double retroDraw(double slot, std::uint32_t purpose) {
    // The first draws of neighbouring seeds lie on a line; the hash (C. Wellons's low-bias one) parts them.
    std::uint32_t seed = randomSeedFromDouble(std::floor(slot)) + purpose * 0x9e3779b9u;
    seed = (seed ^ seed >> 16) * 0x7feb352du;
    seed = (seed ^ seed >> 15) * 0x846ca68bu;
    return randomUnitFromSeed(seed ^ seed >> 16);
}

double retroPulse(double positionInSlot, double attack) {
    return smoothStep(positionInSlot / attack) - smoothStep((positionInSlot - attack) / (1 - attack));
}

void RetroScatter::addTo(std::vector<SpiritParam>& sprites, QVAssetCache& assets, double seconds,
                         double strength, bool isPhoto, CGSize frame) const {
    constexpr std::uint32_t kDraws = 8;
    // All of them from the first frame on: none is to be decoded in the middle of a clip.
    std::vector<SpiritParam::Texture> pictures;
    for (int i = 0; i < count; ++i)
        pictures.push_back(assets.textureNamed(prefix + std::to_string(i) + ".png"));
    const double places = std::clamp(fewest + (most - fewest) * strength, 0.0, most);
    for (int i = 0; i < int(std::ceil(places)); ++i) {
        // Each place changes at a moment of its own.
        const double clock = seconds / slotSeconds + i * 0.618;
        const double slot = std::floor(clock);
        std::uint32_t purpose = (seed + std::uint32_t(i)) * kDraws;
        const auto draw = [&] { return retroDraw(slot, purpose++); };
        if (draw() > chance && !isPhoto) continue;
        const double size = draw(), x = 2 * draw() - 1, y = 2 * draw() - 1, turn = draw();
        const int picture = std::min(int(draw() * count), count - 1);
        // The last place comes in little by little as the strength grows.
        const double share = std::min(places - i, 1.0);
        const double fade = upright > 0 ? 4 * retroPulse(clock - slot, 0.5) : 1;
        const double opacity = alpha * share * (0.55 + 0.45 * draw()) * std::min(fade, 1.0);

        const double shorter = std::min(frame.width, frame.height) / frame.width;
        const double side = (smallest + (largest - smallest) * size * size) * shorter;
        const double halfHeight = frame.height / frame.width;
        CGAffineTransform pose = CGAffineTransformMakeScale(turn < 0.5 ? side : -side, side);
        if (upright > 0) {
            pose.d = halfHeight / upright * (0.8 + 0.5 * size);
            // It trembles from frame to frame of film.
            pose.tx = x + 0.006 * (retroDraw(std::floor(seconds * 18), purpose) - 0.5);
            pose.ty = 0.4 * y * halfHeight;
        } else {
            const double angle = isLevel ? 0 : 2 * std::numbers::pi * turn;
            pose = CGAffineTransformConcat(pose, CGAffineTransformMakeRotation(angle));
            pose.tx = x;
            pose.ty = y * halfHeight;
        }
        sprites.push_back(SpiritParam::paramWithTrans(pose, float(opacity), pictures[std::size_t(picture)]));
    }
}

}  // namespace qv
