#include "QVFilterExtension/Resources/Assets/Landscape/Landscape.h"

#include "QVFilterExtension/Resources/Assets/Landscape/Foreground.h"
#include "QVFilterExtension/Resources/Assets/Landscape/Water.h"
#include "QVFilterExtension/Resources/Assets/Support/Noise.h"
#include "QVFilterExtension/Resources/Assets/Support/Parallel.h"
#include "QVFilterExtension/Resources/Assets/Support/Tone.h"

namespace qv::assets {
namespace {

constexpr float kMountainDistance = 7000, kFarShoreDistance = 900, kBankDistance = 4;

using Moment = Landscape::Moment;

/// Adds a layer whose row y lies `shift(y)` columns further left than its own column 0.
template <class Shift>
void addLayer(const Layer& layer, Shift&& shift, float sun, Raster<Vec3>& picture) {
    parallelFor(std::min(layer.height(), picture.height()), [&](int y) {
        const float offset = shift(float(y) + 0.5f);
        const int whole = floorToInt(offset);
        const float part = offset - float(whole);
        const Lit* row = layer.row(y);
        for (int x = 0; x < picture.width(); ++x) {
            const Lit &left = row[std::clamp(x + whole, 0, layer.width() - 1)],
                      &right = row[std::clamp(x + whole + 1, 0, layer.width() - 1)];
            if (left.alpha + right.alpha <= 0) continue;
            const Lit lit = left * (1 - part) + right * part;
            picture.at(x, y) = picture.at(x, y) * (1 - lit.alpha) + lit.ambient + lit.sun * sun;
        }
    });
}

/// As above for what stands far away, with the shadows of clouds passing over.
void addFarLayer(const Layer& layer, const View& view, float distance, float margin, const Moment& moment,
                 Raster<Vec3>& picture) {
    const auto shift = [&](float) { return margin + view.focal * moment.cameraX / distance; };
    if (moment.cloudShadow <= 0) {
        addLayer(layer, shift, moment.sun, picture);
        return;
    }
    Layer shaded = layer;
    const float drift = 0.05f * float(moment.seconds);
    parallelFor(layer.height(), [&](int y) {
        for (int x = 0; x < layer.width(); ++x) {
            const float cloud = noise(float(x) / (0.22f * view.focal) + drift + distance,
                                      float(y) / (0.12f * view.focal), 701);
            shaded.at(x, y).sun *= 1 - moment.cloudShadow * smoothstep(0.4f, 0.7f, cloud);
        }
    });
    addLayer(shaded, shift, moment.sun, picture);
}

}  // namespace

Landscape::Landscape(const View& view, float travel)
    : view_(view),
      farMargin_(int(travel * view.focal / kFarShoreDistance) + 2),
      nearMargin_(int(travel * view.focal / kBankDistance) + 2),
      mountains_(drawMountains(view, farMargin_)),
      farShore_(drawFarShore(view, farMargin_)),
      bank_(drawBank(view, nearMargin_)),
      jetty_(drawJettyAndBoat(view, nearMargin_, false)),
      jettyMirrored_(drawJettyAndBoat(view, nearMargin_, true)),
      spruce_(drawSpruceTree(view, nearMargin_)) {}

std::vector<std::uint8_t> Landscape::render(const Moment& moment) const {
    View view = view_;
    view.cameraX = moment.cameraX;
    Raster<Vec3> picture(view.width, view.height);
    const Raster<Vec3> sky = drawSky(view, moment.seconds, moment.fast);
    for (int y = 0; y < std::min(sky.height(), picture.height()); ++y)
        std::copy_n(sky.row(y), picture.width(), picture.row(y));
    addFarLayer(mountains_, view, kMountainDistance, float(farMargin_), moment, picture);
    addFarLayer(farShore_, view, kFarShoreDistance, float(farMargin_), moment, picture);
    drawWater(view, view.row(0, kFarShoreDistance), moment.seconds,
              {jettyMirrored_, float(nearMargin_), moment.sun}, picture);

    // A row of the near bank, or of the jetty, shows what lies at one distance: about this far below the
    // eyes.
    const auto nearShift = [&](float below) {
        return [&, below](float row) {
            const float distance =
                std::max(kBankDistance, below * view.focal / std::max(row - view.horizon, 1.0f));
            return float(nearMargin_) + view.focal * moment.cameraX / distance;
        };
    };
    addLayer(bank_, nearShift(view.cameraY - 0.6f), moment.sun, picture);
    addLayer(jetty_, nearShift(view.cameraY - 0.4f), moment.sun, picture);
    const float sway = 0.0035f * (fractalNoise(0.5f * float(moment.seconds), 0.5f, 2, 702) - 0.5f);
    const float spruceFoot = view.row(bankHeight(-6.5f, kSpruceDistance), kSpruceDistance);
    addLayer(
        spruce_,
        [&](float row) {
            const float up = (spruceFoot - row) / view.focal;
            return float(nearMargin_) + view.focal * (moment.cameraX / kSpruceDistance + sway * up * up * 10);
        },
        moment.sun, picture);
    drawMeadow(view, moment.seconds, moment.sun, picture);

    static const FilmTable film;
    std::vector<std::uint8_t> rgba(std::size_t(view.width) * std::size_t(view.height) * 4);
    parallelFor(view.height, [&](int y) {
        for (int x = 0; x < view.width; ++x)
            develop(film, picture.at(x, y) * moment.exposure, x, y, std::uint32_t(moment.seconds * 1000),
                    moment.grain,
                    rgba.data() + (std::size_t(y) * std::size_t(view.width) + std::size_t(x)) * 4);
    });
    return rgba;
}

}  // namespace qv::assets
