#include "Platform/Drawing/BitmapCanvas.h"

#include <cairo.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <initializer_list>
#include <new>
#include <numeric>
#include <utility>

#include "Platform/Drawing/Private/FontFace.h"
#include "Platform/Drawing/Private/ImageResampling.h"

namespace qv {

namespace {

using Surface = std::unique_ptr<cairo_surface_t, decltype(&cairo_surface_destroy)>;
using Pattern = std::unique_ptr<cairo_pattern_t, decltype(&cairo_pattern_destroy)>;
using Context = std::unique_ptr<cairo_t, decltype(&cairo_destroy)>;

/// The part of the drawing state that Cairo does not hold.
struct Settings {
    double alpha = 1;
    bool drawable = true;  ///< false under a transform without an inverse
};

bool allFinite(std::initializer_list<double> values) {
    return std::all_of(values.begin(), values.end(), [](double value) { return std::isfinite(value); });
}

bool isFinite(const CGRect& rect) {
    return allFinite({rect.origin.x, rect.origin.y, rect.size.width, rect.size.height});
}

/// 0 for NaN.
double unit(double value) {
    return value > 0 ? std::min(value, 1.0) : 0;
}

cairo_matrix_t matrixOf(const CGAffineTransform& t) {
    return {t.a, t.b, t.c, t.d, t.tx, t.ty};
}

/// False, with nothing of use in the context, when a coordinate is not finite.
bool setPath(cairo_t* cairo, const UIBezierPath& path) {
    cairo_new_path(cairo);
    for (const auto& element : path.elements()) {
        const auto& p = element.points;
        for (const auto& point : element.used())
            if (!allFinite({point.x, point.y})) return false;
        switch (element.verb) {
            case UIBezierPath::Verb::move:
                cairo_move_to(cairo, p[0].x, p[0].y);
                break;
            case UIBezierPath::Verb::line:
                cairo_line_to(cairo, p[0].x, p[0].y);
                break;
            case UIBezierPath::Verb::curve:
                cairo_curve_to(cairo, p[0].x, p[0].y, p[1].x, p[1].y, p[2].x, p[2].y);
                break;
            case UIBezierPath::Verb::close:
                cairo_close_path(cairo);
                break;
        }
    }
    return true;
}

cairo_operator_t operatorFor(CanvasBlend blend) {
    switch (blend) {
        case CanvasBlend::normal:
            return CAIRO_OPERATOR_OVER;
        case CanvasBlend::multiply:
            return CAIRO_OPERATOR_MULTIPLY;
        case CanvasBlend::screen:
            return CAIRO_OPERATOR_SCREEN;
        case CanvasBlend::add:
            return CAIRO_OPERATOR_ADD;
        case CanvasBlend::clear:
            return CAIRO_OPERATOR_CLEAR;
        case CanvasBlend::sourceIn:
            return CAIRO_OPERATOR_IN;
        case CanvasBlend::destinationIn:
            return CAIRO_OPERATOR_DEST_IN;
        case CanvasBlend::destinationOut:
            return CAIRO_OPERATOR_DEST_OUT;
    }
    return CAIRO_OPERATOR_OVER;
}

/// How many pixels a unit step along each axis of the current space covers.
CGSize pixelsPerUnit(cairo_t* cairo) {
    cairo_matrix_t m;
    cairo_get_matrix(cairo, &m);
    return {std::hypot(m.xx, m.yx), std::hypot(m.xy, m.yy)};
}

/// Whole pixels that `length` pixels need; lengths a rounding error above a whole number count as that
/// number.
int pixelCount(double length) {
    return int(std::clamp(std::ceil(length - 1e-6), 1.0, double(kMaximumImageSide)));
}

}  // namespace

/// Cairo's pixels are blue, green, red, alpha in memory and a bitmap's red, green, blue, alpha. Everything
/// that is drawn treats these three channels alike, so the canvas simply swaps red and blue of the colours it
/// is given: its memory then is a bitmap's, and bitmaps are drawn without conversion.
struct BitmapCanvas::State {
    CGSize size;
    double scale;
    bool opaque;
    std::shared_ptr<std::vector<std::uint8_t>> pixels;  ///< the surface's memory
    Surface surface{nullptr, cairo_surface_destroy};
    Context cairo{nullptr, cairo_destroy};
    std::vector<Settings> settings{1};  ///< the current one is the last

    bool drawable() const { return settings.back().drawable; }

    /// What has been drawn, once Cairo is done with it.
    const std::vector<std::uint8_t>& finishedPixels() const {
        cairo_surface_flush(surface.get());
        return *pixels;
    }
    UIImage imageOf(std::shared_ptr<std::vector<std::uint8_t>> memory) const {
        if (opaque)
            for (std::size_t i = 3; i < memory->size(); i += 4) (*memory)[i] = 255;
        return UIImage(Bitmap{cairo_image_surface_get_width(surface.get()),
                              cairo_image_surface_get_height(surface.get()), std::move(memory)},
                       scale);
    }

    void setSource(const UIColor& color) {
        cairo_set_source_rgba(cairo.get(), unit(color.blue()), unit(color.green()), unit(color.red()),
                              unit(color.alpha()) * settings.back().alpha);
    }

    void paintGradient(Pattern gradient, const std::vector<GradientStop>& stops) {
        for (const auto& [location, color] : stops)
            cairo_pattern_add_color_stop_rgba(gradient.get(), unit(location), unit(color.blue()),
                                              unit(color.green()), unit(color.red()),
                                              unit(color.alpha()) * settings.back().alpha);
        cairo_pattern_set_extend(gradient.get(), CAIRO_EXTEND_PAD);
        cairo_set_source(cairo.get(), gradient.get());
        cairo_paint(cairo.get());
    }

    /// Stretches the bitmap over `rect`. The border repeats outwards under the filter, so that it does not
    /// fade.
    void paintBitmap(const Bitmap& bitmap, const CGRect& rect) {
        Surface picture(cairo_image_surface_create_for_data(const_cast<std::uint8_t*>(bitmap.pixels->data()),
                                                            CAIRO_FORMAT_ARGB32, bitmap.width, bitmap.height,
                                                            int(bitmap.rowBytes())),
                        cairo_surface_destroy);
        Pattern pattern(cairo_pattern_create_for_surface(picture.get()), cairo_pattern_destroy);
        double scaleX = bitmap.width / rect.size.width, scaleY = bitmap.height / rect.size.height;
        auto toPicture = matrixOf({scaleX, 0, 0, scaleY, -rect.origin.x * scaleX, -rect.origin.y * scaleY});
        cairo_pattern_set_matrix(pattern.get(), &toPicture);
        cairo_pattern_set_extend(pattern.get(), CAIRO_EXTEND_PAD);
        cairo_pattern_set_filter(pattern.get(), CAIRO_FILTER_BILINEAR);

        auto* context = cairo.get();
        double alpha = settings.back().alpha;
        auto blend = cairo_get_operator(context);
        bool grouped = alpha < 1 && blend != CAIRO_OPERATOR_CLEAR;
        if (grouped) {
            cairo_push_group(context);
            cairo_set_operator(context, CAIRO_OPERATOR_OVER);
        }
        cairo_set_source(context, pattern.get());
        cairo_new_path(context);
        cairo_rectangle(context, rect.origin.x, rect.origin.y, rect.size.width, rect.size.height);
        cairo_fill(context);
        if (grouped) {
            cairo_pop_group_to_source(context);
            cairo_set_operator(context, blend);
            cairo_paint_with_alpha(context, alpha);
        }
    }
};

BitmapCanvas::BitmapCanvas(CGSize size, bool opaque, double scale) {
    double width = std::round(size.width * scale), height = std::round(size.height * scale);
    auto fits = [](double side) { return side >= 1 && side <= kMaximumImageSide; };
    if (!fits(width) || !fits(height) || !(scale > 0)) return;
    auto state = std::make_unique<State>(State{size, scale, opaque});
    try {
        state->pixels = std::make_shared<std::vector<std::uint8_t>>(std::size_t(width * height) * 4);
    } catch (const std::bad_alloc&) {
        return;
    }
    state->surface.reset(cairo_image_surface_create_for_data(
        state->pixels->data(), opaque ? CAIRO_FORMAT_RGB24 : CAIRO_FORMAT_ARGB32, int(width), int(height),
        int(width) * 4));
    state->cairo.reset(cairo_create(state->surface.get()));
    if (cairo_status(state->cairo.get()) != CAIRO_STATUS_SUCCESS) return;
    cairo_scale(state->cairo.get(), width / size.width, height / size.height);
    state_ = std::move(state);
}

BitmapCanvas::~BitmapCanvas() = default;
BitmapCanvas::BitmapCanvas(BitmapCanvas&&) noexcept = default;
BitmapCanvas& BitmapCanvas::operator=(BitmapCanvas&&) noexcept = default;

CGSize BitmapCanvas::size() const {
    return state_ ? state_->size : CGSize{};
}

void BitmapCanvas::saveState() {
    if (!state_) return;
    cairo_save(state_->cairo.get());
    state_->settings.push_back(state_->settings.back());
}

void BitmapCanvas::restoreState() {
    if (!state_ || state_->settings.size() == 1) return;
    cairo_restore(state_->cairo.get());
    state_->settings.pop_back();
}

void BitmapCanvas::concatTransform(const CGAffineTransform& transform) {
    if (!state_ || !state_->drawable()) return;
    auto* cairo = state_->cairo.get();
    cairo_matrix_t current, step = matrixOf(transform), combined;
    cairo_get_matrix(cairo, &current);
    cairo_matrix_multiply(&combined, &step, &current);
    auto inverse = combined;  // Cairo would stop for good at a matrix that it cannot invert
    if (cairo_matrix_invert(&inverse) == CAIRO_STATUS_SUCCESS && allFinite({combined.x0, combined.y0})) {
        cairo_set_matrix(cairo, &combined);
    } else {
        state_->settings.back().drawable = false;
    }
}

void BitmapCanvas::clipToRect(const CGRect& rect) {
    clipToPath(UIBezierPath::bezierPathWithRect(rect));
}

void BitmapCanvas::clipToPath(const UIBezierPath& path) {
    if (!state_) return;
    if (!setPath(state_->cairo.get(), path)) {
        state_->settings.back().drawable = false;
        return;
    }
    cairo_set_fill_rule(state_->cairo.get(), CAIRO_FILL_RULE_WINDING);
    cairo_clip(state_->cairo.get());
}

void BitmapCanvas::setBlend(CanvasBlend blend) {
    if (state_) cairo_set_operator(state_->cairo.get(), operatorFor(blend));
}

void BitmapCanvas::setAlpha(double alpha) {
    if (state_) state_->settings.back().alpha = unit(alpha);
}

void BitmapCanvas::fillRect(const CGRect& rect, const UIColor& color) {
    if (!CGRectIsEmpty(rect)) fillPath(UIBezierPath::bezierPathWithRect(rect), color);
}

void BitmapCanvas::fillPath(const UIBezierPath& path, const UIColor& color, bool evenOdd) {
    if (!state_ || !state_->drawable() || !setPath(state_->cairo.get(), path)) return;
    state_->setSource(color);
    cairo_set_fill_rule(state_->cairo.get(), evenOdd ? CAIRO_FILL_RULE_EVEN_ODD : CAIRO_FILL_RULE_WINDING);
    cairo_fill(state_->cairo.get());
}

void BitmapCanvas::strokePath(const UIBezierPath& path, const UIColor& color, double width, LineCap cap,
                              LineJoin join, const std::vector<double>& dashes) {
    if (!state_ || !state_->drawable() || !(width > 0) || !std::isfinite(width)) return;
    auto* cairo = state_->cairo.get();
    if (!setPath(cairo, path)) return;
    state_->setSource(color);
    cairo_set_line_width(cairo, width);
    cairo_set_line_cap(cairo, cap == LineCap::round    ? CAIRO_LINE_CAP_ROUND
                              : cap == LineCap::square ? CAIRO_LINE_CAP_SQUARE
                                                       : CAIRO_LINE_CAP_BUTT);
    cairo_set_line_join(cairo, join == LineJoin::round   ? CAIRO_LINE_JOIN_ROUND
                               : join == LineJoin::bevel ? CAIRO_LINE_JOIN_BEVEL
                                                         : CAIRO_LINE_JOIN_MITER);
    double period = std::accumulate(dashes.begin(), dashes.end(), 0.0);
    bool dashed = period > 0 && std::isfinite(period) &&
                  std::none_of(dashes.begin(), dashes.end(), [](double length) { return length < 0; });
    cairo_set_dash(cairo, dashes.data(), dashed ? int(dashes.size()) : 0, 0);
    cairo_stroke(cairo);
}

void BitmapCanvas::drawLinearGradient(CGPoint start, CGPoint end, const std::vector<GradientStop>& stops) {
    if (!state_ || !state_->drawable() || stops.empty() || !allFinite({start.x, start.y, end.x, end.y}))
        return;
    state_->paintGradient(
        Pattern(cairo_pattern_create_linear(start.x, start.y, end.x, end.y), cairo_pattern_destroy), stops);
}

void BitmapCanvas::drawRadialGradient(CGPoint startCenter, double startRadius, CGPoint endCenter,
                                      double endRadius, const std::vector<GradientStop>& stops) {
    if (!state_ || !state_->drawable() || stops.empty()) return;
    if (!allFinite({startCenter.x, startCenter.y, startRadius, endCenter.x, endCenter.y, endRadius})) return;
    state_->paintGradient(
        Pattern(cairo_pattern_create_radial(startCenter.x, startCenter.y, std::max(startRadius, 0.0),
                                            endCenter.x, endCenter.y, std::max(endRadius, 0.0)),
                cairo_pattern_destroy),
        stops);
}

void BitmapCanvas::drawImage(const UIImage& image, const CGRect& rect) {
    if (!state_ || !state_->drawable() || !image || CGRectIsEmpty(rect) || !isFinite(rect)) return;
    auto [perX, perY] = pixelsPerUnit(state_->cairo.get());
    int width = pixelCount(rect.size.width * perX), height = pixelCount(rect.size.height * perY);
    const auto& source = image.bitmap();
    // Cairo's own filters look at few pixels or are slow, so what shrinks is averaged first and what grows is
    // left to it.
    state_->paintBitmap(image.isResizable() ? resizedByCaps(image, width, height, perX, perY)
                                            : resampledBitmap(source, std::min(width, source.width),
                                                              std::min(height, source.height)),
                        rect);
}

void BitmapCanvas::drawText(const std::string& utf8, CGPoint origin, const UIFont& font,
                            const UIColor& color) {
    fillPath(pathForText(utf8, origin, font), color);
}

UIBezierPath BitmapCanvas::pathForText(const std::string& utf8, CGPoint origin, const UIFont& font) {
    UIBezierPath line;
    if (!font) return line;
    font.face()->layOut(utf8, [&](UIBezierPath outline, double x) {
        outline.applyTransform(CGAffineTransformMakeTranslation(x, 0));
        line.appendPath(outline);
    });
    line.applyTransform({font.pointSize(), 0, 0, font.pointSize(), origin.x, origin.y + font.ascender()});
    return line;
}

UIImage BitmapCanvas::image() const {
    if (!state_) return {};
    return state_->imageOf(std::make_shared<std::vector<std::uint8_t>>(state_->finishedPixels()));
}

UIImage BitmapCanvas::takeImage() {
    if (!state_) return {};
    state_->finishedPixels();
    const std::unique_ptr<State> state = std::move(state_);
    return state->imageOf(state->pixels);
}

}  // namespace qv
