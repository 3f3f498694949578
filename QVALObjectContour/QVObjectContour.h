#pragma once

#include <vector>

#include "Platform/Geometry/Geometry.h"
#include "Platform/Media/PixelBuffer.h"

namespace qv {

/// A closed line around a part of the subject or around a hole in it: points in mask pixels, origin top left,
/// y down, pixel n reaching from n to n + 1. The last point is joined to the first.
using QVOutline = std::vector<CGPoint>;
/// The outlines of a subject: several people, their separate parts, and the holes in them.
using QVOutlineSet = std::vector<QVOutline>;

/// Finds the outlines of the subject in a mask.
class QVObjectContour {
  public:
    /// The outlines of what is brighter than half white in `mask` (gray8); none for a mask without a subject,
    /// a nil one and one of another format. The same mask gives the same outlines; safe on any thread.
    ///
    /// Lines are found between the pixels, so a soft edge that moves by a part of a pixel moves its outline
    /// by as much, and the stairs of a hard one are smoothed. The mask's own detail counts down to 1/640 of
    /// its longer side. Along the mask's border an outline runs on the border. Clockwise as seen around the
    /// subject, anticlockwise around holes; the topmost first. Specks narrower than 1/128 of the longer side
    /// are left out.
    ///
    /// `radius`, mask pixels, is how coarse the outline is: gaps and hollows narrower than one and a half of
    /// it are closed, corners are rounded by it, and the outline keeps 0.64 of it away from the subject, so
    /// that smoothing cuts nothing off and outlines of two radii lie apart. 0 follows the edge. More than a
    /// quarter of the longer side counts as that.
    ///
    /// `epsilon` is how far the outline's corners, and the curve that is drawn through them, may leave the
    /// line that was found: in longer sides of the mask, so 1 / side is a pixel. Points that are not needed
    /// for that are left out.
    static QVOutlineSet getApproxContourPointsWithMask(const PixelBuffer& mask, int radius, float epsilon);
};

}  // namespace qv
