#include "QVFilterExtension/Resources/Assets/PhotoDissolves/PhotoDissolves.h"
#include "QVFilterExtension/Resources/Assets/Support/Vec3.h"

namespace qv::assets {

namespace {

/// How a liquid moves: large eddies with smaller ones in them.
struct Liquid {
    float scale;  ///< eddies per height
    float reach;  ///< how far it carries, heights
    std::uint32_t seed;
};

/// Where what lies at a place came from. The velocity is the curl of a noise, so nothing is pressed together
/// or torn apart (R. Bridson et al., "Curl-Noise for Procedural Fluid Flow", 2007).
Place originOf(Place place, const Liquid& liquid) {
    constexpr int kSteps = 24;
    const float step = liquid.reach / kSteps / liquid.scale;
    const float large = liquid.scale, small = 2.7f * liquid.scale;
    for (int i = 0; i < kSteps; ++i) {
        const NoiseSample a = noiseWithSlope(place.x * large, place.y * large, liquid.seed);
        const NoiseSample b = noiseWithSlope(place.x * small + 5.3f, place.y * small + 9.1f, liquid.seed + 1);
        place.x -= step * (a.dy + 0.55f * b.dy) * liquid.scale;
        place.y += step * (a.dx + 0.55f * b.dx) * liquid.scale;
    }
    return place;
}

/// Threads of ink: thin dark lines of a stretched noise.
float threads(Place p, float frequency, std::uint32_t seed) {
    return fractalNoise(p.x * frequency, p.y * frequency, 4, seed) - 0.5f;
}

float timeAt(int index, Place from) {
    switch (index) {
        case 0:  // from the left
            return from.x / kAspect + 0.55f * threads(from, 4.5f, 20);
        case 1: {  // three drops that run into each other
            const Place drops[] = {{0.62f, 0.36f}, {1.30f, 0.66f}, {0.28f, 0.86f}};
            float nearest = 10;
            for (int i = 0; i < 3; ++i)
                nearest = std::min(nearest,
                                   std::hypot(from.x - drops[i].x, from.y - drops[i].y) + 0.12f * float(i));
            return nearest + 0.45f * threads(from, 5, 40);
        }
        case 2:  // combed colours
            return 0.7f * from.y + 0.16f * std::sin(26 * from.y + 5 * threads(from, 3, 60)) +
                   0.4f * threads(from, 3.5f, 64);
        default:  // smoke from below
            return 1 - from.y + 0.75f * threads({from.x, 0.6f * from.y}, 4, 80);
    }
}

constexpr Liquid kLiquids[kPicturesInSet] = {
    {2.1f, 0.50f, 3}, {2.6f, 0.42f, 11}, {1.7f, 0.62f, 29}, {2.4f, 0.5f, 53}};

}  // namespace

TimeField flow(int index) {
    // The way is smooth, so it is walked for every other pixel only.
    Raster<Vec3> origins(kFieldWidth / 2, kFieldHeight / 2);
    parallelFor(origins.height(), [&](int y) {
        for (int x = 0; x < origins.width(); ++x) {
            const Place from = originOf(
                {(2 * float(x) + 1) / kFieldHeight, (2 * float(y) + 1) / kFieldHeight}, kLiquids[index]);
            origins.at(x, y) = {from.x, from.y, 0};
        }
    });
    return fieldOf([&](Place place) {
        const Vec3 from = origins.sample(place.x * kFieldHeight / 2, place.y * kFieldHeight / 2);
        return timeAt(index, {from.x, from.y});
    });
}

}  // namespace qv::assets
