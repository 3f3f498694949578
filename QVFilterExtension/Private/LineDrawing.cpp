#include "QVFilterExtension/Private/LineDrawing.h"

#include <algorithm>
#include <cmath>

#include "Platform/Drawing/BitmapCanvas.h"
#include "Platform/ImageGraph/MTIFilters.h"

namespace qv {

CGAffineTransform fittingTransform(CGSize mask, CGSize frame) {
    const double scale = std::min(frame.width / mask.width, frame.height / mask.height);
    const CGAffineTransform middle = CGAffineTransformMakeTranslation(-mask.width * 0.5, -mask.height * 0.5);
    return CGAffineTransformConcat(CGAffineTransformConcat(middle, CGAffineTransformMakeScale(scale, scale)),
                                   CGAffineTransformMakeTranslation(frame.width * 0.5, frame.height * 0.5));
}

MTIImage strokedPathImage(const UIBezierPath& path, CGSize size, double lineWidth, const UIColor& color) {
    if (path.isEmpty()) return {};
    // A transparent pixel all around, so that nothing of the line is drawn out to where the picture ends.
    const double reach = lineWidth / 2 + 2;
    const CGRect seen = CGRectIntersection(CGRectInset(path.controlPointBounds(), -reach, -reach),
                                           CGRectMake(0, 0, size.width, size.height));
    if (CGRectIsEmpty(seen)) return {};
    const double left = std::floor(seen.minX()), top = std::floor(seen.minY());
    BitmapCanvas canvas({std::ceil(seen.maxX()) - left, std::ceil(seen.maxY()) - top});
    if (!canvas) return {};
    canvas.concatTransform(CGAffineTransformMakeTranslation(-left, -top));
    canvas.strokePath(path, color, lineWidth, LineCap::round, LineJoin::round);
    MTICropFilter placement;
    placement.setInputImage(MTIImage::imageWithUIImage(canvas.takeImage()));
    placement.setCropRegion(MTICropRegionMake(-left, -top, size.width, size.height));
    return placement.outputImage();
}

}  // namespace qv
