#include "Platform/ImageGraph/LinePass.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <numbers>
#include <optional>
#include <span>
#include <utility>

#include "Platform/ImageGraph/Private/OverlayInstances.h"

namespace qv {

namespace {

constexpr double kPi = std::numbers::pi;

using Instance = CurveInstanceData;

CGPoint operator+(CGPoint a, CGPoint b) {
    return {a.x + b.x, a.y + b.y};
}
CGPoint operator-(CGPoint a, CGPoint b) {
    return {a.x - b.x, a.y - b.y};
}
CGPoint operator*(CGPoint a, double k) {
    return {a.x * k, a.y * k};
}
double cross(CGPoint a, CGPoint b) {
    return a.x * b.y - a.y * b.x;
}
double dot(CGPoint a, CGPoint b) {
    return a.x * b.x + a.y * b.y;
}
double length(CGPoint a) {
    return std::hypot(a.x, a.y);
}

struct Curve {
    CGPoint start, control, end;

    bool isPoint() const { return start == end && control == start; }
    CGPoint in() const { return control == start ? end - start : control - start; }
    CGPoint out() const { return control == end ? end - start : end - control; }
};

Curve curveOf(const LineSegment& s) {
    return {{s.start[0], s.start[1]}, {s.control[0], s.control[1]}, {s.end[0], s.end[1]}};
}

bool isFinite(const LineSegment& s) {
    return std::isfinite(s.start[0] + s.start[1] + s.end[0] + s.end[1] + s.control[0] + s.control[1]);
}

/// From direction `a` to `b`, −π..π.
double turnBetween(CGPoint a, CGPoint b) {
    return std::atan2(cross(a, b), dot(a, b));
}

/// How far `point` is from a curve that bends one way by less than a right angle, measured across its chord.
double offCurve(const Curve& curve, CGPoint point) {
    const CGPoint chord = curve.end - curve.start;
    const double scale = 1 / length(chord);
    const double along = dot(point - curve.start, chord) * scale;
    const double bend = dot(curve.control - curve.start, chord) * scale, whole = 1 / scale;
    // along = 2 t (1 - t) bend + t² whole
    const double a = whole - 2 * bend, root = std::sqrt(std::max(bend * bend + a * along, 0.0));
    const double t = std::clamp(bend + root > 0 ? along / (bend + root) : 0.0, 0.0, 1.0);
    const double across = cross(chord, point - curve.start) * scale;
    return std::abs(across - 2 * t * (1 - t) * cross(chord, curve.control - curve.start) * scale);
}

/// One curve that keeps the ends and directions of several that follow each other, where it comes as near as
/// `tolerance` to where they meet.
std::optional<Curve> merged(std::span<const Curve> curves, double tolerance) {
    const CGPoint start = curves.front().start, end = curves.back().end, chord = end - start;
    const CGPoint in = curves.front().in(), out = curves.back().out();
    if (dot(in, chord) <= 0 || dot(out, chord) <= 0 || dot(in, out) <= 0) return std::nullopt;
    Curve curve{start, start + chord * 0.5, end};
    const double sine = cross(in, out);
    if (std::abs(sine) > 1e-3 * length(in) * length(out)) {
        const double before = cross(chord, out) / sine, after = cross(in, chord) / sine;
        if (!(before > 0 && after > 0)) return std::nullopt;
        curve.control = start + in * before;
    }
    for (std::size_t i = 1; i < curves.size(); ++i) {
        if (offCurve(curve, curves[i].start) > tolerance) return std::nullopt;
    }
    return curve;
}

/// The curves with as many of them made one as `tolerance` allows.
std::vector<Curve> simplified(const std::vector<Curve>& curves, double tolerance) {
    constexpr std::size_t kMostMerged = 64;
    std::vector<Curve> result;
    for (std::size_t i = 0; i < curves.size();) {
        Curve curve = curves[i];
        std::size_t count = 1;
        for (std::size_t n = 2; n <= kMostMerged && i + n <= curves.size(); ++n) {
            // Where directions are restless a longer piece may fit although this one does not.
            if (n > 2 * count + 4) break;
            if (const auto longer = merged(std::span(curves).subspan(i, n), tolerance)) {
                curve = *longer;
                count = n;
            }
        }
        result.push_back(curve);
        i += count;
    }
    return result;
}

class Layout {
  public:
    Layout(const LinePass& line, int width, int height, int ribs)
        : line_(line), width_(width), height_(height), mostRibs_(ribs) {
        const double x = width / line.pointSize.width, y = height / line.pointSize.height;
        pixelsPerPoint_ = std::sqrt(x * y);
        radius_ = 0.5 * line.thickness;
    }

    OverlayLayout make() {
        const double tolerance = std::max(0.02 * radius_, 0.3 / pixelsPerPoint_);
        std::vector<Curve> run;
        for (const LineSegment& segment : line_.segments) {
            if (!isFinite(segment)) continue;
            const Curve curve = curveOf(segment);
            if (!run.empty() && run.back().end != curve.start)
                add(simplified(std::exchange(run, {}), tolerance));
            run.push_back(curve);
        }
        add(simplified(run, tolerance));
        result_.draws = {{{}, 0, std::uint32_t(result_.instances.size() * sizeof(float) / sizeof(Instance))}};
        return std::move(result_);
    }

  private:
    void add(const std::vector<Curve>& curves) {
        if (curves.empty()) return;
        const bool isClosed = curves.back().end == curves.front().start;
        const Curve* before = isClosed ? &curves.back() : nullptr;
        if (!isClosed) addRound(curves.front().start, {1, 0}, kPi);
        for (const Curve& curve : curves) {
            if (curve.isPoint()) {
                addRound(curve.start, {1, 0}, kPi);
            } else {
                if (before && !before->isPoint())
                    addRound(curve.start, before->out(), turnBetween(before->out(), curve.in()));
                addCurve(curve, curve.in(), turnBetween(curve.in(), curve.out()));
            }
            before = &curve;
        }
        if (!isClosed) addRound(curves.back().end, {1, 0}, kPi);
    }

    /// Both sides of a turn on the spot.
    void addRound(CGPoint place, CGPoint direction, double turn) {
        if (std::abs(turn) > 0.01) addCurve({place, place, place}, direction, turn);
    }

    void addCurve(const Curve& curve, CGPoint direction, double turn) {
        const CGRect frame = CGRectMake(-radius_, -radius_, line_.pointSize.width + 2 * radius_,
                                        line_.pointSize.height + 2 * radius_);
        const double left = std::min({curve.start.x, curve.control.x, curve.end.x});
        const double right = std::max({curve.start.x, curve.control.x, curve.end.x});
        const double top = std::min({curve.start.y, curve.control.y, curve.end.y});
        const double bottom = std::max({curve.start.y, curve.control.y, curve.end.y});
        const double margin = 2 / pixelsPerPoint_;
        if (right < frame.origin.x - margin || bottom < frame.origin.y - margin ||
            left > frame.maxX() + margin || top > frame.maxY() + margin)
            return;
        // Chords of an arc, and those of a long one within a twentieth of a pixel.
        const double bow = length(curve.start + curve.end - curve.control * 2) * pixelsPerPoint_;
        const double ribs = std::max(std::abs(turn) / 0.12, std::sqrt(bow / (4 * 0.05)));
        Instance v{};
        v.start[0] = float(curve.start.x);
        v.start[1] = float(curve.start.y);
        v.end[0] = float(curve.end.x);
        v.end[1] = float(curve.end.y);
        v.control[0] = float(curve.control.x);
        v.control[1] = float(curve.control.y);
        // A hairline is a pixel wide and fainter.
        const double pixels = line_.thickness * pixelsPerPoint_;
        v.radius = float(std::max(radius_, 0.5 / pixelsPerPoint_));
        v.strength = float(std::min(pixels, 1.0));
        v.ribs = float(std::clamp(std::ceil(ribs), 1.0, double(mostRibs_)));
        v.angle = float(std::atan2(direction.y, direction.x));
        v.turn = float(turn);
        v.pixelsPerPoint = float(pixelsPerPoint_);
        v.pointSize[0] = float(line_.pointSize.width);
        v.pointSize[1] = float(line_.pointSize.height);
        v.frameSize[0] = float(width_);
        v.frameSize[1] = float(height_);
        const auto words = std::bit_cast<std::array<float, sizeof(v) / sizeof(float)>>(v);
        result_.instances.insert(result_.instances.end(), words.begin(), words.end());
    }

    const LinePass& line_;
    int width_, height_, mostRibs_;
    double pixelsPerPoint_, radius_;
    OverlayLayout result_;
};

}  // namespace

LinePass::LinePass(std::vector<LineSegment> curves, float width, CGSize size, int triangles, int samples)
    : segments(std::move(curves)), thickness(width), pointSize(size) {
    if (const auto& library = ShaderLibrary::platform()) {
        kind_.vertexStage = library->function("bezier_vertex.vert");
        kind_.fragmentStage = library->function("bezier_fragment.frag");
    }
    kind_.style = {DrawTopology::triangleStrip, DrawBlend::brightest, int(sizeof(Instance) / 16),
                   std::clamp(samples, 1, 64)};
    kind_.vertices = std::max(triangles, 2) + 2;
}

bool LinePass::isVisible(int, int) const {
    return !segments.empty() && std::isfinite(thickness) && thickness > 0 && pointSize.width > 0 &&
           pointSize.height > 0;
}

OverlayLayout LinePass::layOut(int width, int height, PictureStore&) const {
    return Layout(*this, width, height, kind_.vertices / 2 - 1).make();
}

}  // namespace qv
