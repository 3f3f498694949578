#pragma once

#include <string>

#include "Platform/Geometry/Geometry.h"
#include "Platform/Media/Bitmap.h"

namespace qv {

/// An immutable picture for drawing: pixels, and how many of them make a point. A cheap value; nil when
/// default-constructed.
class UIImage {
  public:
    UIImage() = default;
    /// A picture of these pixels, `scale` of them to a point.
    explicit UIImage(Bitmap bitmap, double scale = 1.0) : bitmap_(std::move(bitmap)), scale_(scale) {}

    /// Reads a PNG or JPEG file; nil when that fails. "@2x" and "@3x" before the extension give the scale.
    static UIImage imageWithContentsOfFile(const std::string& path);

    explicit operator bool() const { return bool(bitmap_); }
    /// Size in points: pixels / scale.
    CGSize size() const { return {bitmap_.width / scale_, bitmap_.height / scale_}; }
    /// Pixels to a point.
    double scale() const { return scale_; }
    /// The pixels; nil for a nil picture.
    const Bitmap& bitmap() const { return bitmap_; }

    /// What a resizable picture's edges and middle do.
    enum class ResizingMode { tile = 0, stretch = 1 };

    /// A picture whose border of `capInsets` points keeps its size when it is drawn into another rectangle,
    /// while edges and middle repeat or stretch.
    UIImage resizableImageWithCapInsets(UIEdgeInsets capInsets, ResizingMode mode) const;

    /// Whether it has caps, which they are, and what lies between them does.
    bool isResizable() const { return resizable_; }
    const UIEdgeInsets& capInsets() const { return capInsets_; }
    ResizingMode resizingMode() const { return mode_; }

  private:
    Bitmap bitmap_;
    double scale_ = 1.0;
    bool resizable_ = false;
    UIEdgeInsets capInsets_;
    ResizingMode mode_ = ResizingMode::tile;
};

}  // namespace qv
