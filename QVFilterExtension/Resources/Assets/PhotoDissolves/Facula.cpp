#include <numbers>

#include "QVFilterExtension/Resources/Assets/PhotoDissolves/PhotoDissolves.h"
#include "QVFilterExtension/Resources/Assets/Support/Vec3.h"

namespace qv::assets {

namespace {

/// How a lens draws a point of light that is out of focus.
struct Iris {
    int blades;      ///< sides of the opening; 0 for a round one
    float catEye;    ///< how much the barrel cuts spots off towards the picture's border, 0..1
    Place first;     ///< where spots tend to light up first
    float tendency;  ///< how strongly, 0..1
    std::uint32_t seed;
};
constexpr Iris kIrises[kPicturesInSet] = {{0, 0, {0.9f, 0.5f}, 0.15f, 3},
                                          {6, 0, {0.0f, 0.5f}, 0.35f, 5},
                                          {0, 0, {0.1f, 1.0f}, 0.75f, 7},
                                          {8, 0.5f, {0.89f, 0.5f}, 0.55f, 9}};

struct Spot {
    Place center;
    float radius, time;
};

/// Distance from a spot's middle in radii of its outline.
float outlineDistance(const Iris& iris, const Spot& spot, Place place) {
    const float dx = (place.x - spot.center.x) / spot.radius, dy = (place.y - spot.center.y) / spot.radius;
    float distance = std::hypot(dx, dy);
    if (iris.blades > 0) {
        // A polygon with bowed sides.
        const float sector = 2 * std::numbers::pi_v<float> / float(iris.blades);
        const float angle = std::atan2(dy, dx) + 0.3f;
        const float inSector = angle - sector * std::floor(angle / sector + 0.5f);
        distance = mix(distance, distance * std::cos(inSector) / std::cos(0.5f * sector), 0.7f);
    }
    if (iris.catEye > 0) {
        const float outX = spot.center.x - 0.5f * kAspect, outY = spot.center.y - 0.5f;
        distance = std::max(distance, std::hypot(dx + iris.catEye * outX, dy + iris.catEye * outY));
    }
    return distance;
}

std::vector<Spot> spotsOf(const Iris& iris) {
    constexpr int kSpots = 420;
    HashStream random(iris.seed);
    std::vector<Spot> spots;
    for (int i = 0; i < kSpots; ++i) {
        Spot spot;
        spot.center = {random.range(-0.1f, kAspect + 0.1f), random.range(-0.1f, 1.1f)};
        // Few large ones, many small.
        const float size = random.next();
        spot.radius = mix(0.022f, 0.19f, size * size * size);
        const float away = std::hypot(spot.center.x - iris.first.x, spot.center.y - iris.first.y) / kAspect;
        spot.time = mix(random.next(), away, iris.tendency);
        spots.push_back(spot);
    }
    std::ranges::sort(spots, std::greater(), &Spot::time);
    return spots;
}

}  // namespace

TimeField facula(int index) {
    const Iris& iris = kIrises[index];
    // What no spot reaches comes last, as a haze.
    TimeField field = fieldOf([&](Place place) {
        return 0.9f + 0.5f * fractalNoise(place.x * 3, place.y * 3, 3, iris.seed + 100);
    });
    for (const Spot& spot : spotsOf(iris)) {
        const float reach = 1.1f * spot.radius;
        const auto pixel = [](float at, int limit) { return std::clamp(int(at * kFieldHeight), 0, limit); };
        const int left = pixel(spot.center.x - reach, kFieldWidth),
                  right = pixel(spot.center.x + reach, kFieldWidth);
        const int top = pixel(spot.center.y - reach, kFieldHeight),
                  bottom = pixel(spot.center.y + reach, kFieldHeight);
        // The smaller, the more in focus.
        const float rim = mix(0.10f, 0.05f, smoothstep(0.02f, 0.15f, spot.radius));
        for (int y = top; y < bottom; ++y)
            for (int x = left; x < right; ++x) {
                const float distance = outlineDistance(iris, spot, placeOf(x, y));
                const float coverage = smoothstep(1.0f, 1.0f - 2 * rim, distance);
                if (coverage <= 0) continue;
                // The bright ring of a spot comes a little before its middle.
                const float inside = 0.06f * (1 - distance * distance);
                field.at(x, y) = mix(field.at(x, y), spot.time + inside, coverage);
            }
    }
    return field;
}

}  // namespace qv::assets
