#pragma once

#include "QVFilterExtension/Resources/Assets/Support/Raster.h"
#include "QVFilterExtension/Resources/Assets/Support/Vec3.h"

/// A mountain lake in the evening: x to the right, y up, z into the picture, metres; the water is at y = 0.
namespace qv::assets {

/// A camera that looks along z, and the picture it makes.
struct View {
    int width, height;  ///< pixels
    float focal;        ///< pixels
    float horizon;      ///< row of the horizon
    float cameraX = 0;  ///< metres to the right of the viewpoint that the world is composed for
    float cameraY = 3.4f;

    float centerX() const { return 0.5f * float(width); }
    /// Sideways slope of the ray through a column: x / z.
    float slopeX(float column) const { return (column - centerX()) / focal; }
    /// Upward slope of the ray through a row: y / z.
    float slopeY(float row) const { return (horizon - row) / focal; }
    float column(float x, float z) const { return centerX() + focal * (x - cameraX) / z; }
    float row(float y, float z) const { return horizon - focal * (y - cameraY) / z; }
    /// The same view with `factor` times the pixels and `margin` more columns on either side.
    View scaled(int factor, int margin = 0) const {
        View view = *this;
        view.width = (width + 2 * margin) * factor;
        view.height = height * factor;
        view.focal *= float(factor);
        view.horizon *= float(factor);
        return view;
    }
};

/// Towards the sun: low, from the left and a little behind the camera.
inline const Vec3 kSunDirection = normalize({-0.88f, 0.27f, -0.32f});
inline constexpr Vec3 kSunLight{3.1f, 1.72f, 0.78f};
inline constexpr Vec3 kSkyLight{0.24f, 0.34f, 0.58f};

/// Light that a still part of the world sends to the camera, split so that the sun can be dimmed by passing
/// clouds; premultiplied by alpha.
struct Lit {
    Vec3 ambient, sun;
    float alpha = 0;
};
inline Lit operator*(const Lit& a, float k) {
    return {a.ambient * k, a.sun * k, a.alpha * k};
}
inline Lit operator+(const Lit& a, const Lit& b) {
    return {a.ambient + b.ambient, a.sun + b.sun, a.alpha + b.alpha};
}
/// `top` over what is there.
inline void layOver(Lit& below, const Lit& top) {
    below = below * (1 - top.alpha) + top;
}
using Layer = Raster<Lit>;

/// The clear sky in a direction given by its slopes.
Vec3 clearSky(float slopeX, float slopeY);
/// What the air adds over `distance` metres at a height, and how much of the light from behind gets through.
struct Haze {
    Vec3 light;
    float transmission;
};
Haze haze(float slopeX, float distance, float height);

/// The sky with two decks of cloud that drift across it.
class Sky {
  public:
    /// Reaches far enough for the clouds of times up to `seconds`.
    Sky(const View& view, float seconds);
    /// Fills the rows above the horizon.
    void draw(float seconds, Raster<Vec3>& picture) const;

  private:
    View view_;
    int rows_, margin_;
    Raster<Vec3> air_, decks_;
};

/// Mountains and wooded hills on the far side of the lake, with `margin` more columns on either side.
Layer drawMountains(const View& view, int margin);
Layer drawFarShore(const View& view, int margin);

}  // namespace qv::assets
