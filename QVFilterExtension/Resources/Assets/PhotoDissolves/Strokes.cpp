#include "QVFilterExtension/Resources/Assets/PhotoDissolves/PhotoDissolves.h"
#include "QVFilterExtension/Resources/Assets/Support/Vec3.h"

namespace qv::assets {

namespace {

/// One stroke of a flat brush, along a line that may bow.
struct BrushStroke {
    Place from, to;
    float bow;    ///< of the line's middle to its right, heights
    float width;  ///< heights
    float start, duration;
    std::uint32_t seed;
};

/// A noise of `count` bristles across that changes slowly along the stroke; 0..1.
float bristles(float along, float across, float count, std::uint32_t seed) {
    return 0.6f * noise(2.5f * along, count * across, seed) +
           0.4f * noise(5.0f * along, 2.7f * count * across, seed + 1);
}

/// Lays a stroke over what comes later.
void paint(TimeField& field, const BrushStroke& stroke) {
    const float dx = stroke.to.x - stroke.from.x, dy = stroke.to.y - stroke.from.y;
    const float length = std::hypot(dx, dy), half = 0.5f * stroke.width;
    const float ux = dx / length, uy = dy / length;
    parallelFor(kFieldHeight, [&](int y) {
        for (int x = 0; x < kFieldWidth; ++x) {
            const Place place = placeOf(x, y);
            const float px = place.x - stroke.from.x, py = place.y - stroke.from.y;
            const float along = (px * ux + py * uy) / length;
            if (along < -0.1f || along > 1.1f) continue;
            const float across = (py * ux - px * uy - stroke.bow * 4 * along * (1 - along)) / half;
            if (std::abs(across) > 1.1f) continue;

            const float hair = bristles(along * length, across, 17 * stroke.width / 0.3f, stroke.seed);
            const float side = across < 0 ? 1.5f : 8.5f;
            const float edge = 0.7f * noise(along * length * 6, side, stroke.seed + 5) +
                               0.3f * noise(along * length * 31, side, stroke.seed + 6);
            // Ends are ragged, and the brush runs dry towards the end.
            const float ends = std::min(along - 0.05f * hair, 1 - along - 0.16f * hair * hair) * length;
            const float border = (1 - 0.17f * edge - std::abs(across)) * half;
            const float paintLeft = hair - mix(-0.1f, 0.34f, smoothstep(0.35f, 1.0f, along));
            const float coverage =
                smoothstep(0, 0.004f, std::min(ends, border)) * smoothstep(0.0f, 0.05f, paintLeft);
            if (coverage <= 0) continue;
            const float time =
                stroke.start + stroke.duration * (along + 0.16f * (hair - 0.5f) + 0.03f * across * across);
            field.at(x, y) = mix(field.at(x, y), time, coverage);
        }
    });
}

/// Rows from one side to the other, one after another; every other one runs back.
std::vector<BrushStroke> toAndFro() {
    std::vector<BrushStroke> rows;
    constexpr int kRows = 5;
    for (int i = 0; i < kRows; ++i) {
        const float y = (float(i) + 0.5f) / kRows, tilt = 0.03f * float(i % 3 - 1);
        Place left{-0.12f, y + tilt}, right{kAspect + 0.22f, y - tilt};
        if (i % 2 == 1) left.x = -0.22f, right.x = kAspect + 0.12f, std::swap(left, right);
        rows.push_back({left, right, 0.03f * float(i % 2 * 2 - 1), 0.27f, 0.42f * float(i), 1.0f,
                        std::uint32_t(31 * i + 3)});
    }
    return rows;
}

/// Side by side along a direction, in a mixed order.
std::vector<BrushStroke> sideBySide(Place direction, int count, float bow, std::uint32_t seed) {
    std::vector<BrushStroke> row;
    HashStream random(seed);
    const float length = std::hypot(direction.x, direction.y);
    const Place u{direction.x / length, direction.y / length}, v{-u.y, u.x};
    // Half the frame's extent along and across the direction.
    const float reach = 0.5f * (std::abs(u.x) * kAspect + std::abs(u.y)) + 0.12f + std::abs(bow);
    const float spread = 0.5f * (std::abs(v.x) * kAspect + std::abs(v.y)) + 0.4f * std::abs(bow);
    for (int i = 0; i < count; ++i) {
        // A bowed line lies as much on one side of its place as on the other.
        const float at = spread * (2 * (float(i) + 0.5f) / float(count) - 1) - 0.66f * bow;
        const float late = random.range(0.02f, 0.12f), tilt = random.range(-0.04f, 0.04f);
        const Place middle{0.5f * kAspect + at * v.x, 0.5f + at * v.y};
        row.push_back(
            {{middle.x - (reach + late) * u.x - tilt * v.x, middle.y - (reach + late) * u.y - tilt * v.y},
             {middle.x + (reach + 0.25f) * u.x + tilt * v.x, middle.y + (reach + 0.25f) * u.y + tilt * v.y},
             bow,
             2.9f * spread / float(count),
             0.9f * random.next(),
             random.range(0.8f, 1.2f),
             hash32(seed + std::uint32_t(i))});
    }
    return row;
}

std::vector<BrushStroke> strokesOf(int index) {
    switch (index) {
        case 0:
            return toAndFro();
        case 1:
            return sideBySide({1, -0.75f}, 8, 0.03f, 71);
        case 2:
            return sideBySide({0.06f, 1}, 7, 0.02f, 113);
        default:
            return sideBySide({1, 0.3f}, 8, -0.32f, 157);
    }
}

}  // namespace

TimeField strokes(int index) {
    // What no brush reached is filled in last.
    TimeField field = fieldOf([index](Place place) {
        return 2.6f + 0.5f * fractalNoise(place.x * 5, place.y * 5, 3, std::uint32_t(index + 900));
    });
    std::vector<BrushStroke> all = strokesOf(index);
    std::ranges::sort(all, std::greater(), &BrushStroke::start);
    for (const BrushStroke& stroke : all) paint(field, stroke);
    return field;
}

}  // namespace qv::assets
