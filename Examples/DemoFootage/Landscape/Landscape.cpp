#include "Examples/DemoFootage/Landscape/Landscape.h"

#include "Examples/DemoFootage/Landscape/Foreground.h"
#include "Examples/DemoFootage/Landscape/Water.h"
#include "QVFilterExtension/Resources/Assets/Support/Noise.h"
#include "QVFilterExtension/Resources/Assets/Support/Parallel.h"
#include "QVFilterExtension/Resources/Assets/Support/Tone.h"

namespace qv::assets {
namespace {

constexpr float kMountainDistance = 7000, kFarShoreDistance = 900, kBankDistance = 4;

using Moment = Landscape::Moment;

/// Adds a layer whose row y lies `shift(y)` columns further left than its own column 0, `sun(x, y)` of its
/// sunlight.
template <class Columns, class Sun>
void addLayer(const Layer& layer, Columns&& shift, Sun&& sun, Raster<Vec3>& picture) {
    parallelFor(std::min(layer.height(), picture.height()), [&](int y) {
        const Shift row(shift(float(y) + 0.5f));
        for (int x = 0; x < picture.width(); ++x) {
            const Lit lit = row.of(layer, x, y);
            if (lit.alpha > 0)
                picture.at(x, y) = picture.at(x, y) * (1 - lit.alpha) + lit.ambient + lit.sun * sun(x, y);
        }
    });
}

/// As above for what stands far away, with the shadows of clouds passing over.
void addFarLayer(const Layer& layer, const View& view, float distance, float margin, const Moment& moment,
                 Raster<Vec3>& picture) {
    const float drift = 0.09f * float(moment.seconds);
    addLayer(
        layer, [&](float) { return margin + view.focal * moment.cameraX / distance; },
        [&](int x, int y) {
            if (moment.cloudShadow <= 0) return moment.sun;
            const float cloud = noise(float(x) / (0.22f * view.focal) + drift + distance,
                                      float(y) / (0.12f * view.focal), 701);
            return moment.sun * (1 - moment.cloudShadow * smoothstep(0.4f, 0.7f, cloud));
        },
        picture);
}

/// Rows with something in them, and those up to `reach` from one.
std::vector<bool> occupiedRows(const Layer& layer, int reach) {
    std::vector<bool> rows(std::size_t(layer.height()));
    for (int y = 0; y < layer.height(); ++y)
        if (std::any_of(layer.row(y), layer.row(y) + layer.width(),
                        [](const Lit& lit) { return lit.alpha > 0; }))
            for (int near = std::max(0, y - reach); near <= std::min(layer.height() - 1, y + reach); ++near)
                rows[std::size_t(near)] = true;
    return rows;
}

}  // namespace

Landscape::Landscape(const View& view, float travel, float seconds)
    : view_(view),
      farMargin_(int(travel * view.focal / kFarShoreDistance) + 2),
      nearMargin_(int(travel * view.focal / kBankDistance) + 2),
      sky_(view, seconds),
      mountains_(drawMountains(view, farMargin_)),
      farShore_(drawFarShore(view, farMargin_)),
      bank_(drawBank(view, nearMargin_)),
      jetty_(drawJettyAndBoat(view, nearMargin_, false)),
      jettyMirrored_(drawJettyAndBoat(view, nearMargin_, true)),
      spruce_(drawSpruceTree(view, nearMargin_)),
      mirroredRows_(occupiedRows(jettyMirrored_, int(0.03f * view.focal))) {}

std::vector<std::uint8_t> Landscape::render(const Moment& moment) const {
    View view = view_;
    view.cameraX = moment.cameraX;
    Raster<Vec3> picture(view.width, view.height);
    sky_.draw(float(moment.seconds), picture);
    addFarLayer(mountains_, view, kMountainDistance, float(farMargin_), moment, picture);
    addFarLayer(farShore_, view, kFarShoreDistance, float(farMargin_), moment, picture);
    drawWater(view, view.row(0, kFarShoreDistance), moment.seconds,
              {jettyMirrored_, mirroredRows_, float(nearMargin_), moment.sun}, picture);

    // A row of the near bank, or of the jetty, shows what lies at one distance: about this far below the
    // eyes.
    const auto nearShift = [&](float below) {
        return [&, below](float row) {
            const float distance =
                std::max(kBankDistance, below * view.focal / std::max(row - view.horizon, 1.0f));
            return float(nearMargin_) + view.focal * moment.cameraX / distance;
        };
    };
    const auto sun = [&](int, int) { return moment.sun; };
    addLayer(bank_, nearShift(view.cameraY - 0.6f), sun, picture);
    addLayer(jetty_, nearShift(view.cameraY - 0.4f), sun, picture);
    const float sway = 0.0035f * (fractalNoise(0.5f * float(moment.seconds), 0.5f, 2, 702) - 0.5f);
    const float spruceFoot = view.row(bankHeight(-6.5f, kSpruceDistance), kSpruceDistance);
    addLayer(
        spruce_,
        [&](float row) {
            const float up = (spruceFoot - row) / view.focal;
            return float(nearMargin_) + view.focal * (moment.cameraX / kSpruceDistance + sway * up * up * 10);
        },
        sun, picture);
    drawMeadow(view, moment.seconds, moment.sun, picture);

    static const FilmTable film;
    std::vector<std::uint8_t> rgba(std::size_t(view.width) * std::size_t(view.height) * 4);
    parallelFor(view.height, [&](int y) {
        for (int x = 0; x < view.width; ++x) {
            const Vec3 light = picture.at(x, y) * moment.exposure;
            const float gray = dot(light, {0.2126f, 0.7152f, 0.0722f});
            // A film for landscapes: colours a little stronger than life, and a lens that darkens the
            // corners.
            const float u = (float(x) - view.centerX()) / view.focal,
                        v = (float(y) - view.horizon) / view.focal;
            const Vec3 vivid = mix(Vec3{gray, gray, gray}, light, 1.22f) * (1.03f - 0.30f * (u * u + v * v));
            develop(film, vivid, x, y, std::uint32_t(moment.seconds * 1000), moment.grain,
                    rgba.data() + (std::size_t(y) * std::size_t(view.width) + std::size_t(x)) * 4);
        }
    });
    return rgba;
}

}  // namespace qv::assets
