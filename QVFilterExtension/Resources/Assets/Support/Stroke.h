#pragma once

#include "QVFilterExtension/Resources/Assets/Support/Raster.h"
#include "QVFilterExtension/Resources/Assets/Support/Vec3.h"

namespace qv::assets {

/// Calls `paint(pixel, coverage)` for every pixel that a straight stroke with round ends touches; its width
/// goes from `startWidth` to `endWidth`, pixels.
template <class T, class Paint>
void stroke(Raster<T>& raster, float x0, float y0, float x1, float y1, float startWidth, float endWidth,
            Paint&& paint) {
    const float reach = 0.5f * std::max(startWidth, endWidth) + 1;
    const int left = std::max(0, int(std::min(x0, x1) - reach)),
              top = std::max(0, int(std::min(y0, y1) - reach));
    const int right = std::min(raster.width() - 1, int(std::max(x0, x1) + reach));
    const int bottom = std::min(raster.height() - 1, int(std::max(y0, y1) + reach));
    const float dx = x1 - x0, dy = y1 - y0, squared = std::max(dx * dx + dy * dy, 1e-6f);
    for (int y = top; y <= bottom; ++y)
        for (int x = left; x <= right; ++x) {
            const float px = float(x) + 0.5f - x0, py = float(y) + 0.5f - y0;
            const float t = clamp01((px * dx + py * dy) / squared);
            const float ex = px - t * dx, ey = py - t * dy;
            const float width = mix(startWidth, endWidth, t);
            // A hairline keeps its mean darkness.
            const float coverage =
                clamp01(0.5f * std::max(width, 1.0f) + 0.5f - std::sqrt(ex * ex + ey * ey)) *
                std::min(width, 1.0f);
            if (coverage > 0) paint(raster.at(x, y), coverage);
        }
}

}  // namespace qv::assets
