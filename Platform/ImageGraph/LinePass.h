#pragma once

#include <memory>
#include <vector>

#include "Platform/Geometry/Geometry.h"
#include "Platform/ImageGraph/MTIImage.h"
#include "Platform/ImageGraph/PassOverlay.h"

namespace qv {

/// A quadratic Bézier curve in a buffer of curves: three pairs of floats, x and y, without padding.
struct LineSegment {
    float start[2];    ///< where it begins
    float end[2];      ///< where it ends
    float control[2];  ///< what it bends towards
    bool operator==(const LineSegment&) const = default;
};

/// A place of a colour ramp.
struct LineStop {
    MTIColor color;  ///< not premultiplied
    float t = 0;     ///< 0 in the middle of the line, 1 at its rim
    bool operator==(const LineStop&) const = default;
};

/// A line along curves, drawn as light: red, green and blue fall from 1 in its middle to 0 at its rim, alpha
/// is 1 across its width; where it crosses itself the larger counts. Curves that follow each other are
/// joined, and what ends or turns sharply is round.
///
/// On a frame the curves are simplified by at most a fiftieth of half the width, or a third of a pixel, so
/// that what is drawn does not grow with the outline's detail.
struct LinePass final : PassOverlay {
    /// A line of `width` along `curves`, all in a space of `size`, which is stretched over the frame. Each
    /// curve is a strip of at most `triangles` triangles.
    LinePass(std::vector<LineSegment> curves, float width, CGSize size, int triangles = 100, int samples = 2);

    const OverlayKind& kind() const override { return kind_; }
    bool isVisible(int width, int height) const override;
    OverlayLayout layOut(int width, int height, PictureStore& pictures) const override;

    std::vector<LineSegment> segments;  ///< the curves, in order
    float thickness = 0;                ///< of the line
    CGSize pointSize;                   ///< of the space of both

    // What listings tell besides.
    std::vector<std::vector<CGPoint>> contours;  ///< outlines that the curves were made from
    std::vector<LineStop> stops;                 ///< colours that the line is given afterwards

  private:
    OverlayKind kind_;
};

}  // namespace qv
