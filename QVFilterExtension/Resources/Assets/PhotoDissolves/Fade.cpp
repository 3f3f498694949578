#include <numbers>

#include "QVFilterExtension/Resources/Assets/PhotoDissolves/PhotoDissolves.h"
#include "QVFilterExtension/Resources/Assets/Support/Vec3.h"

namespace qv::assets {

namespace {

constexpr float kTurn = 2 * std::numbers::pi_v<float>;

/// Two halves drawn aside: they hang in folds, and the hem comes after.
float curtain(float across, float down) {
    const float side = std::abs(2 * across - 1);
    const float folds = std::sin(kTurn * (5.5f * side + 0.10f * std::sin(3 * down)));
    const float sway = noise(across * 4, down * 2, 7) - 0.5f;
    return side + 0.028f * folds + 0.16f * down * down + 0.10f * sway;
}

/// Layers of cloud that drift over each other.
float clouds(Place p) {
    const float bendX = fractalNoise(p.x * 1.6f, p.y * 1.6f, 3, 13),
                bendY = fractalNoise(p.x * 1.6f + 7, p.y * 1.6f, 3, 17);
    return fractalNoise(p.x * 1.4f + 1.1f * bendX, p.y * 1.9f + 1.1f * bendY, 3, 21);
}

}  // namespace

TimeField fade(int index) {
    return fieldOf([index](Place place) {
        const float across = place.x / kAspect, down = place.y;
        switch (index) {
            case 0:
                return across;
            case 1:
                return across + down;
            case 2:
                return curtain(across, down);
            default:
                return clouds(place);
        }
    });
}

}  // namespace qv::assets
