#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Platform/Drawing/UIBezierPath.h"
#include "Platform/Drawing/UIFont.h"
#include "Platform/Drawing/UIImage.h"
#include "Platform/Geometry/Geometry.h"
#include "Platform/Geometry/UIColor.h"

namespace qv {

/// A colour on the way of a gradient.
struct GradientStop {
    double location;  ///< 0..1
    UIColor color;    ///< not premultiplied
};

/// How a line ends.
enum class LineCap { butt, round, square };
/// How two lines meet.
enum class LineJoin { miter, round, bevel };

/// Compositing operators (W3C Compositing and Blending). `sourceIn` and `destinationIn` also clear what lies
/// outside the drawn shape, as far as the clip goes: the source is transparent there.
enum class CanvasBlend { normal, multiply, screen, add, clear, sourceIn, destinationIn, destinationOut };

/// A bitmap to draw on. Coordinates are points from the top-left corner, y down. Everything is antialiased.
/// Colours are cut to 0..1; a shape with a coordinate that is not finite draws nothing. Used by one thread at
/// a time.
class BitmapCanvas {
  public:
    /// A transparent canvas, or a black one that stays opaque. Its pixels are size × scale, rounded to
    /// nearest, and `size` covers them exactly. A size that gives no pixels, or more than kMaximumImageSide
    /// on a side, gives a canvas that is false and draws nothing.
    explicit BitmapCanvas(CGSize size, bool opaque = false, double scale = 1.0);
    ~BitmapCanvas();
    BitmapCanvas(BitmapCanvas&&) noexcept;
    BitmapCanvas& operator=(BitmapCanvas&&) noexcept;

    explicit operator bool() const { return state_ != nullptr; }
    /// The size it was made with, in points.
    CGSize size() const;

    /// Transform, clip, blend and alpha are kept together; restoring more often than saving changes nothing.
    void saveState();
    void restoreState();
    /// Later drawing goes through `transform` first. Under a transform without an inverse nothing is drawn.
    void concatTransform(const CGAffineTransform& transform);
    /// Later drawing stays within this, and within what was clipped to before.
    void clipToRect(const CGRect& rect);
    void clipToPath(const UIBezierPath& path);
    /// The operator of later drawing.
    void setBlend(CanvasBlend blend);
    /// Multiplies the alpha of later drawing, 0..1.
    void setAlpha(double alpha);

    /// Fills a shape with one colour; `evenOdd` leaves out what is enclosed twice.
    void fillRect(const CGRect& rect, const UIColor& color);
    void fillPath(const UIBezierPath& path, const UIColor& color, bool evenOdd = false);
    /// `dashes` are lengths drawn and skipped in turn; a negative length or a sum of 0 draws a whole line.
    void strokePath(const UIBezierPath& path, const UIColor& color, double width, LineCap cap = LineCap::butt,
                    LineJoin join = LineJoin::miter, const std::vector<double>& dashes = {});
    /// Fills the clip; before the first and after the last stop their colours go on. Stops mix as colours
    /// that are not premultiplied: to fade out, end on the same colour with alpha 0.
    void drawLinearGradient(CGPoint start, CGPoint end, const std::vector<GradientStop>& stops);
    void drawRadialGradient(CGPoint startCenter, double startRadius, CGPoint endCenter, double endRadius,
                            const std::vector<GradientStop>& stops);
    /// Scales the picture into `rect` with good filtering, also when it shrinks much; a resizable picture
    /// keeps its caps.
    void drawImage(const UIImage& image, const CGRect& rect);
    /// One line of UTF-8 text; `origin` is the top-left corner of its line box.
    void drawText(const std::string& utf8, CGPoint origin, const UIFont& font, const UIColor& color);
    /// Outlines of one line of text as a path, `origin` as for `drawText`.
    static UIBezierPath pathForText(const std::string& utf8, CGPoint origin, const UIFont& font);

    /// What has been drawn so far, with the canvas's scale; later drawing does not change it.
    UIImage image() const;
    /// The same without a copy of the pixels; the canvas is false afterwards.
    UIImage takeImage();

  private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace qv
