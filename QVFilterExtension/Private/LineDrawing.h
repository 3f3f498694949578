#pragma once

#include "Platform/Drawing/UIBezierPath.h"
#include "Platform/Geometry/UIColor.h"
#include "Platform/ImageGraph/MTIImage.h"

/// Lines that the processor draws.
namespace qv {

/// Fits what lies over a mask of that size into a frame: as large as both sides allow, in the middle.
CGAffineTransform fittingTransform(CGSize mask, CGSize frame);

/// An image of `size` pixels that is transparent but for the path's line, with round ends and corners. Pixels
/// are drawn, kept and handed to the device only in the box around the line. Nil when no part of it is in the
/// image.
MTIImage strokedPathImage(const UIBezierPath& path, CGSize size, double lineWidth, const UIColor& color);

}  // namespace qv
