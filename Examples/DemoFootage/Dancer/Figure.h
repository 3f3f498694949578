#pragma once

#include "Examples/DemoFootage/Dancer/Pose.h"
#include "QVFilterExtension/Resources/Assets/Support/Raster.h"

namespace qv::assets {

/// A camera in front of the dancer, on the same axes.
struct StageView {
    int width, height;     ///< pixels
    float focal, horizon;  ///< pixels
    float cameraX = 0, cameraY = 1.0f, distance = 4.55f;

    float scale(float z) const { return focal / (distance - z); }
    float column(Vec3 p) const { return 0.5f * float(width) + (p.x - cameraX) * scale(p.z); }
    float row(Vec3 p) const { return horizon - (p.y - cameraY) * scale(p.z); }
};

/// Colour premultiplied by how much of the pixel is covered.
struct Painted {
    Vec3 color;
    float alpha = 0;
};
inline Painted operator*(const Painted& a, float k) {
    return {a.color * k, a.alpha * k};
}
inline Painted operator+(const Painted& a, const Painted& b) {
    return {a.color + b.color, a.alpha + b.alpha};
}

/// How strong the coloured lights from behind are.
struct RimLights {
    float cyan, magenta;
};

/// The dancer in a pose, lit, with a soft edge.
Raster<Painted> drawFigure(const StageView& view, const Pose& pose, const RimLights& rims);

}  // namespace qv::assets
