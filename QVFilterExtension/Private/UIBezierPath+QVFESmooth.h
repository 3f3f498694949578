#pragma once

#include "Platform/Drawing/UIBezierPath.h"
#include "QVALObjectContour/QVObjectContour.h"

/// What becomes of a subject's outlines before they are drawn: where they run along the mask's border they
/// are led out of the frame, and their corners are rounded. Points are mask pixels, as QVObjectContour gives
/// them; `rect` and `originRect` are the mask's bounds.
namespace qv {

/// Within 1.1 pixels of the first or of the last pixels' near side, which is a pixel before the far edge.
bool isPointOnEdge(const CGPoint& point, const CGRect& rect);
/// Within 1.1 pixels, each way, of a corner of the square over the rectangle's width, whatever its height;
/// its far sides lie a pixel before the edge too.
bool isPointOnVertex(const CGPoint& point, const CGRect& rect);

/// The point moved by `expandLength` in a direction, which is normalised in single precision; the point
/// itself where the direction has no length. `originRect` does not count.
CGPoint expandPoint(const CGPoint& point, const CGRect& originRect, double expandLength,
                    const CGPoint& directVector);
/// With a point `expandLength` further out added where a run along the border begins and ends, so that what
/// is drawn along the run lies outside the picture. Points at the corners stay as they are; so does
/// everything for an empty rectangle and a length that is not above 0.
QVOutline expandPoints(const QVOutline& points, const CGRect& originRect, double expandLength);
QVOutlineSet expandPointsArray(const QVOutlineSet& pointsArray, const CGRect& originRect,
                               double expandLength);

/// With two points added on each edge longer than twice `minLength`, at that distance from its ends: so a
/// curve that is drawn with the points as controls stays close to the corners.
QVOutline adjustCurvePoints(const QVOutline& points, double minLength);
QVOutlineSet adjustCurvePointsArray(const QVOutlineSet& pointsArray, double minLength);

/// A closed subpath for each outline: quadratic curves between the middles of its edges, with its points as
/// controls. Long edges stay straight but for 6 pixels at their ends.
UIBezierPath smoothPathWithPointArray(const QVOutlineSet& pointsArray);
/// The same of outlines that are led out of the frame.
UIBezierPath smoothPathWithPointArray(const QVOutlineSet& pointsArray, const CGRect& originRect,
                                      double expandLength);

}  // namespace qv
