#include "QVFilterExtension/Resources/Assets/Fonts/StrokedGlyph.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <utility>

#include "QVFilterExtension/Resources/Assets/Support/Parallel.h"

namespace qv::assets {
namespace {

struct Point {
    double x = 0, y = 0;
};
Point operator+(Point a, Point b) {
    return {a.x + b.x, a.y + b.y};
}
Point operator-(Point a, Point b) {
    return {a.x - b.x, a.y - b.y};
}
Point operator*(Point a, double k) {
    return {a.x * k, a.y * k};
}
double dot(Point a, Point b) {
    return a.x * b.x + a.y * b.y;
}
double cross(Point a, Point b) {
    return a.x * b.y - a.y * b.x;
}
double length(Point a) {
    return std::hypot(a.x, a.y);
}
Point unit(Point a) {
    return a * (1 / std::max(length(a), 1e-9));
}

struct Stroke {
    std::vector<Point> points;
    bool closed = false;
    double low = -1e9, high = 1e9;
};
struct Dot {
    Point center;
    double radius;
};

/// The strokes as a field that is negative inside the ink.
class Ink {
  public:
    Ink(const std::string& commands, const StrokeStyle& style) : half_(style.width / 2) {
        parse(commands, style.roundness);
        for (Stroke& stroke : strokes_) extendToBand(stroke);
    }

    double operator()(Point p) const {
        double nearest = 1e9;
        for (const Dot& dot : dots_) nearest = std::min(nearest, length(p - dot.center) - dot.radius);
        for (const Stroke& stroke : strokes_)
            nearest = std::min(nearest, std::max({distance(stroke, p), stroke.low - p.y, p.y - stroke.high}));
        return nearest;
    }

    bool empty() const { return strokes_.empty() && dots_.empty(); }
    /// A rectangle around all ink.
    std::pair<Point, Point> bounds() const {
        Point low{1e9, 1e9}, high{-1e9, -1e9};
        const auto add = [&](Point p, double r) {
            low = {std::min(low.x, p.x - r), std::min(low.y, p.y - r)};
            high = {std::max(high.x, p.x + r), std::max(high.y, p.y + r)};
        };
        for (const Dot& dot : dots_) add(dot.center, dot.radius);
        for (const Stroke& stroke : strokes_)
            for (const Point p : stroke.points) add(p, 1.5 * half_);
        return {low, high};
    }

  private:
    void parse(const std::string& commands, double k) {
        std::istringstream in(commands);
        double low = -1e9, high = 1e9;
        char command;
        const auto number = [&] {
            double v;
            if (!(in >> v)) throw std::invalid_argument("a number is missing in: " + commands);
            return v;
        };
        const auto point = [&] {
            const double x = number();
            return Point{x, number()};
        };
        const auto curve = [&](Point c1, Point c2, Point end) {
            constexpr int kPieces = 24;
            std::vector<Point>& points = strokes_.back().points;
            const Point start = points.back();
            for (int i = 1; i <= kPieces; ++i) {
                const double t = double(i) / kPieces, s = 1 - t;
                points.push_back(start * (s * s * s) + c1 * (3 * s * s * t) + c2 * (3 * s * t * t) +
                                 end * (t * t * t));
            }
        };
        while (in >> command) {
            switch (command) {
                case 'M':
                    strokes_.push_back({{point()}, false, low, high});
                    break;
                case 'L':
                    strokes_.back().points.push_back(point());
                    break;
                case 'H':
                case 'V': {
                    const Point start = strokes_.back().points.back(), end = point(), d = (end - start) * k;
                    if (command == 'H')
                        curve({start.x + d.x, start.y}, {end.x, end.y - d.y}, end);
                    else
                        curve({start.x, start.y + d.y}, {end.x - d.x, end.y}, end);
                    break;
                }
                case 'C': {
                    const Point c1 = point(), c2 = point();
                    curve(c1, c2, point());
                    break;
                }
                case 'Z':
                    strokes_.back().closed = true;
                    break;
                case 'P':
                case 'O': {
                    const double radius = number();
                    std::vector<Point> corners;
                    while (in >> std::ws && !std::isalpha(in.peek()) && in.peek() != EOF)
                        corners.push_back(point());
                    addRounded(corners, radius, command == 'O', k, low, high, curve);
                    break;
                }
                case 'D': {
                    const Point center = point();
                    dots_.push_back({center, number()});
                    break;
                }
                case 'B':
                    low = number();
                    high = number();
                    break;
                default:
                    throw std::invalid_argument("unknown command in: " + commands);
            }
        }
    }

    template <class Curve>
    void addRounded(const std::vector<Point>& corners, double radius, bool closed, double k, double low,
                    double high, Curve&& curve) {
        const std::size_t n = corners.size();
        strokes_.push_back({{}, closed, low, high});
        for (std::size_t i = 0; i < n; ++i) {
            std::vector<Point>& points = strokes_.back().points;
            const Point corner = corners[i];
            if (!closed && (i == 0 || i + 1 == n)) {
                points.push_back(corner);
                continue;
            }
            const Point before = corners[(i + n - 1) % n] - corner, after = corners[(i + 1) % n] - corner;
            const double r = std::min({radius, length(before) * 0.5, length(after) * 0.5});
            const Point from = corner + unit(before) * r, to = corner + unit(after) * r;
            points.push_back(from);
            curve(from + (corner - from) * k, to + (corner - to) * k, to);
        }
    }

    void extendToBand(Stroke& stroke) const {
        if (stroke.closed || stroke.points.size() < 2) return;
        const auto extend = [&](Point& end, Point before) {
            if (std::abs(end.y - stroke.low) < 1 || std::abs(end.y - stroke.high) < 1)
                end = end + unit(end - before) * (3 * half_);
        };
        extend(stroke.points.front(), stroke.points[1]);
        extend(stroke.points.back(), stroke.points[stroke.points.size() - 2]);
    }

    double distance(const Stroke& stroke, Point p) const {
        const std::vector<Point>& points = stroke.points;
        const std::size_t pieces = stroke.closed ? points.size() : points.size() - 1;
        double nearest = 1e9, along = 0, total = 0;
        for (std::size_t i = 0; i < pieces; ++i) {
            const Point a = points[i], ab = points[(i + 1) % points.size()] - a, ap = p - a;
            const double size = length(ab),
                         t = std::clamp(dot(ap, ab) / std::max(size * size, 1e-9), 0.0, 1.0);
            const double away = length(ap - ab * t);
            if (away < nearest) {
                nearest = away;
                along = total + t * size;
            }
            total += size;
        }
        nearest -= half_;
        if (stroke.closed) return nearest;
        // A free end is cut flat; only what belongs to that end is.
        const auto beyond = [&](Point end, Point before) { return dot(p - end, unit(end - before)); };
        if (along < 2 * half_) nearest = std::max(nearest, beyond(points.front(), points[1]));
        if (total - along < 2 * half_)
            nearest = std::max(nearest, beyond(points.back(), points[points.size() - 2]));
        return nearest;
    }

    double half_;
    std::vector<Stroke> strokes_;
    std::vector<Dot> dots_;
};

struct Sample {
    Point at, tangent;
    bool corner = false;  ///< turns sharply here, and has no tangent
    bool node = false;    ///< a point of the outline in any case: a corner or the end of a swelling
};

/// The field's zero line as closed lists of points, ink to the right.
std::vector<std::vector<Sample>> trace(const Ink& ink) {
    constexpr double kCell = 9.1;  // no metric is a multiple of it, so that no edge runs along the grid
    const auto [low, high] = ink.bounds();
    const int columns = int((high.x - low.x) / kCell) + 3, rows = int((high.y - low.y) / kCell) + 3;
    const auto place = [&, low = low](int i, int j) {
        return Point{low.x + (i - 0.77) * kCell, low.y + (j - 0.77) * kCell};
    };
    std::vector<double> field(std::size_t(columns + 1) * std::size_t(rows + 1));
    const auto value = [&](int i, int j) -> double& {
        return field[std::size_t(j) * std::size_t(columns + 1) + std::size_t(i)];
    };
    for (int j = 0; j <= rows; ++j)
        for (int i = 0; i <= columns; ++i) value(i, j) = ink(place(i, j));

    // Grid edges are named by their lower left end and direction; a cell joins the edges that the line
    // crosses.
    using Edge = std::pair<int, int>;
    const auto name = [&](int i, int j, bool upright) { return Edge{j * (columns + 1) + i, upright}; };
    std::map<Edge, Edge> next;
    std::map<Edge, Point> crossings;
    const auto cross = [&](int i, int j, bool upright) {
        const Edge edge = name(i, j, upright);
        if (!crossings.count(edge)) {
            Point in = place(i, j), out = upright ? place(i, j + 1) : place(i + 1, j);
            if (value(i, j) > 0) std::swap(in, out);
            for (int step = 0; step < 18; ++step) {
                const Point middle = (in + out) * 0.5;
                (ink(middle) <= 0 ? in : out) = middle;
            }
            crossings[edge] = (in + out) * 0.5;
        }
        return edge;
    };
    for (int j = 0; j < rows; ++j)
        for (int i = 0; i < columns; ++i) {
            const bool corners[4] = {value(i, j) <= 0, value(i + 1, j) <= 0, value(i + 1, j + 1) <= 0,
                                     value(i, j + 1) <= 0};
            const auto side = [&](int s) {
                return s == 0   ? cross(i, j, false)
                       : s == 1 ? cross(i + 1, j, true)
                       : s == 2 ? cross(i, j + 1, false)
                                : cross(i, j, true);
            };
            // Going round the cell anticlockwise, the line comes in where ink begins and leaves where it
            // ends.
            for (int s = 0; s < 4; ++s)
                if (!corners[s] && corners[(s + 1) % 4])
                    for (int back = 1; back < 4; ++back) {
                        const int t = (s + back) % 4;
                        if (corners[t] && !corners[(t + 1) % 4]) {
                            next[side(s)] = side(t);
                            break;
                        }
                    }
        }

    std::vector<std::vector<Sample>> loops;
    while (!next.empty()) {
        std::vector<Sample> loop;
        for (auto it = next.begin(); it != next.end();) {
            const Point at = crossings[it->first];
            constexpr double e = 0.2;
            const Point gradient = unit({ink({at.x + e, at.y}) - ink({at.x - e, at.y}),
                                         ink({at.x, at.y + e}) - ink({at.x, at.y - e})});
            loop.push_back({at, {gradient.y, -gradient.x}});
            const Edge following = it->second;
            next.erase(it);
            it = next.find(following);
        }
        loops.push_back(std::move(loop));
    }
    return loops;
}

/// Puts points where the line turns sharply between two of its points, and where it is furthest out.
std::vector<Sample> withNodes(const std::vector<Sample>& loop, const Ink& ink) {
    std::vector<Sample> out;
    for (std::size_t i = 0; i < loop.size(); ++i) {
        const Sample &a = loop[i], &b = loop[(i + 1) % loop.size()];
        out.push_back(a);
        const double turn = cross(a.tangent, b.tangent);
        if (std::abs(turn) < 0.35 && dot(a.tangent, b.tangent) > 0) {
            const auto passes = [](double u, double v) {
                return std::abs(u) > 1e-3 && std::abs(v) > 1e-3 && u * v < 0;
            };
            const bool upright = passes(a.tangent.x, b.tangent.x);
            if (!upright && !passes(a.tangent.y, b.tangent.y)) continue;
            const double t = upright ? a.tangent.x / (a.tangent.x - b.tangent.x)
                                     : a.tangent.y / (a.tangent.y - b.tangent.y);
            const Point tangent = upright ? Point{0, std::copysign(1.0, a.tangent.y)}
                                          : Point{std::copysign(1.0, a.tangent.x), 0};
            Point at = a.at + (b.at - a.at) * t;
            // The field grows outwards, to the left, as fast as the distance.
            for (int step = 0; step < 3; ++step) at = at - Point{-tangent.y, tangent.x} * ink(at);
            out.push_back({at, tangent, false, true});
            continue;
        }
        Point corner = (a.at + b.at) * 0.5;
        if (std::abs(turn) > 0.1) {
            const Point met = a.at + a.tangent * (cross(b.at - a.at, b.tangent) / turn);
            if (length(met - corner) < 25) corner = met;
        }
        out.push_back({corner, {}, true, true});
    }
    const auto node = std::find_if(out.begin(), out.end(), [](const Sample& s) { return s.node; });
    if (node != out.end()) std::rotate(out.begin(), node, out.end());
    return out;
}

Point rounded(Point p) {
    return {std::round(p.x), std::round(p.y)};
}

/// The control of the quadratic curve that leaves and arrives along the tangents, if there is a sound one.
std::optional<Point> controlBetween(Point from, Point leaving, Point to, Point arriving) {
    const double turn = cross(leaving, arriving);
    if (std::abs(turn) < 1e-3 || dot(leaving, arriving) < 0.2) return {};
    const double along = cross(to - from, arriving) / turn, back = cross(leaving, to - from) / turn;
    if (along <= 0 || back <= 0) return {};
    return from + leaving * along;
}

double curveError(Point from, Point control, Point to, const std::vector<Sample>& samples, std::size_t first,
                  std::size_t last) {
    double worst = 0;
    for (std::size_t i = first + 1; i < last; ++i) {
        double nearest = 1e9;
        constexpr int kPieces = 24;
        for (int k = 0; k <= kPieces; ++k) {
            const double t = double(k) / kPieces, s = 1 - t;
            const Point p = from * (s * s) + control * (2 * s * t) + to * (t * t), d = samples[i].at - p;
            // Across the curve only: along it the sample may lie between two of these points.
            const Point direction = unit((control - from) * s + (to - control) * t);
            nearest = std::min(nearest, std::abs(cross(direction, d)) + 0.04 * std::abs(dot(direction, d)));
        }
        worst = std::max(worst, nearest);
    }
    return worst;
}

OutlineContour fit(const std::vector<Sample>& loop, const Ink& ink) {
    std::vector<Sample> samples = withNodes(loop, ink);
    samples.push_back(samples.front());
    OutlineContour contour;
    const auto add = [&](Point p, bool onCurve) {
        const Point r = rounded(p);
        contour.push_back({int(r.x), int(r.y), onCurve});
    };
    // At a corner the line leaves, and arrives, along its neighbour's tangent.
    const auto leaving = [&](std::size_t i) {
        return samples[i].corner ? samples[i + 1].tangent : samples[i].tangent;
    };
    const auto arriving = [&](std::size_t i) {
        return samples[i].corner ? samples[i - 1].tangent : samples[i].tangent;
    };
    std::size_t i = 0;
    while (i + 1 < samples.size()) {
        add(samples[i].at, true);
        std::size_t best = i + 1;
        bool curved = false;
        Point control;
        for (std::size_t j = i + 1; j < samples.size(); ++j) {
            const Point from = samples[i].at, to = samples[j].at;
            const Point direction = unit(to - from);
            double off = length(to - from) > 0.5 || j == i + 1 ? 0 : 1e9;  // not all the way round
            for (std::size_t k = i + 1; k < j; ++k)
                off = std::max(off, std::abs(cross(direction, samples[k].at - from)));
            if (off < 0.3) {
                best = j;
                curved = false;
            } else if (const auto c = controlBetween(from, leaving(i), to, arriving(j));
                       c && curveError(from, *c, to, samples, i, j) < 0.45) {
                best = j;
                curved = true;
                control = *c;
            } else if (j > i + 60) {
                break;
            }
            if (samples[j].node) break;
        }
        if (curved) add(control, false);
        i = best;
    }
    // Points that rounding made equal, or that lie on a straight line between their neighbours, say nothing.
    OutlineContour distinct;
    for (const OutlinePoint& p : contour)
        if (distinct.empty() || p != distinct.back()) distinct.push_back(p);
    while (distinct.size() > 1 && distinct.front() == distinct.back()) distinct.pop_back();
    OutlineContour clean;
    for (std::size_t k = 0; k < distinct.size(); ++k) {
        const OutlinePoint &p = distinct[k], &after = distinct[(k + 1) % distinct.size()];
        const OutlinePoint& before = clean.empty() ? distinct.back() : clean.back();
        const int bend = (p.x - before.x) * (after.y - p.y) - (p.y - before.y) * (after.x - p.x);
        if (p.onCurve && before.onCurve && after.onCurve &&
            std::abs(bend) < 0.6 * std::hypot(after.x - before.x, after.y - before.y))
            continue;
        clean.push_back(p);
    }
    return clean;
}

FontGlyph strokedGlyph(const GlyphSkeleton& skeleton, const StrokeStyle& style) {
    FontGlyph glyph{
        skeleton.character, skeleton.advance ? skeleton.advance : skeleton.left + skeleton.right, {}};
    const Ink ink(skeleton.strokes, style);
    if (ink.empty()) return glyph;
    int left = std::numeric_limits<int>::max(), right = std::numeric_limits<int>::min();
    for (const std::vector<Sample>& loop : trace(ink)) {
        glyph.contours.push_back(fit(loop, ink));
        for (const OutlinePoint& p : glyph.contours.back()) {
            left = std::min(left, p.x);
            right = std::max(right, p.x);
        }
    }
    const int shift =
        skeleton.advance ? (skeleton.advance - (right - left)) / 2 - left : skeleton.left - left;
    for (OutlineContour& contour : glyph.contours)
        for (OutlinePoint& p : contour) p.x += shift;
    if (!skeleton.advance) glyph.advance = skeleton.left + (right - left) + skeleton.right;
    return glyph;
}

}  // namespace

std::vector<FontGlyph> strokedGlyphs(std::span<const GlyphSkeleton> skeletons, const StrokeStyle& style) {
    std::vector<FontGlyph> glyphs(skeletons.size());
    parallelFor(int(skeletons.size()),
                [&](int i) { glyphs[std::size_t(i)] = strokedGlyph(skeletons[std::size_t(i)], style); });
    return glyphs;
}

}  // namespace qv::assets
