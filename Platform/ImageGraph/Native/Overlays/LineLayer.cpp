#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <memory>

#include "Platform/Geometry/Geometry.h"
#include "Platform/ImageGraph/Native/Overlays/OverlayLayer.h"
#include "Platform/ImageGraph/Private/OverlayInstances.h"

namespace qv {

namespace {

/// Where the samples of a pixel lie, across and down: Vulkan's standard places.
using SamplePlaces = std::array<std::array<float, 2>, kMostSamples>;
constexpr SamplePlaces kMiddle{{{0.5f, 0.5f}}};
constexpr SamplePlaces kFour{{{0.375f, 0.125f}, {0.875f, 0.375f}, {0.125f, 0.625f}, {0.625f, 0.875f}}};

double cross(CGPoint a, CGPoint b) {
    return a.x * b.y - a.y * b.x;
}
CGPoint between(CGPoint a, CGPoint b, double t) {
    return {a.x + (b.x - a.x) * t, a.y + (b.y - a.y) * t};
}

/// A curve as its ribs divide it; see bezier_vertex.vert.
struct Ribs {
    const CurveInstanceData& curve;
    CGPoint start{curve.start[0], curve.start[1]}, end{curve.end[0], curve.end[1]},
        control{curve.control[0], curve.control[1]};

    CGPoint direction(int rib) const {
        const double angle = curve.angle + double(curve.turn) * rib / curve.ribs;
        return {std::cos(angle), std::sin(angle)};
    }
    CGPoint place(int rib) const {
        if (rib <= 0) return start;
        if (rib >= int(curve.ribs)) return end;
        double t = rib / double(curve.ribs);
        if (std::abs(curve.turn) > 0.02f) {
            // Where the curve runs in the rib's direction.
            const CGPoint towards = direction(rib);
            const double before = cross({control.x - start.x, control.y - start.y}, towards);
            const double sum = before + cross(towards, {end.x - control.x, end.y - control.y});
            if (std::abs(sum) > 1e-12) t = std::clamp(before / sum, 0.0, 1.0);
        }
        return between(between(start, control, t), between(control, end, t), t);
    }
    /// The two ends of a rib, in pixels of the frame.
    std::array<CGPoint, 2> ends(int rib) const {
        const double pixel = 1 / double(curve.pixelsPerPoint);
        const double reach = curve.radius * 1.003 + pixel;  // room for the soft rim
        // Pieces that follow each other overlap a little.
        const double lap = rib <= 0 ? -0.2 * pixel : rib >= int(curve.ribs) ? 0.2 * pixel : 0;
        const CGPoint here = place(rib), along = direction(rib);
        const auto end = [&](double side) {
            const CGPoint p{here.x + along.x * lap - along.y * side * reach,
                            here.y + along.y * lap + along.x * side * reach};
            return CGPoint{p.x / curve.pointSize[0] * curve.frameSize[0],
                           p.y / curve.pointSize[1] * curve.frameSize[1]};
        };
        return {end(-1), end(1)};
    }
};

/// The part of a line between two ribs: two triangles of one colour function.
struct Piece {
    LinePiece light;
    std::array<CGPoint, 4> corners;  ///< the triangles are 0 1 2 and 1 2 3
    int firstRow, endRow;

    Piece(const Ribs& ribs, int rib, const std::array<CGPoint, 2>& here, const std::array<CGPoint, 2>& next,
          int height)
        : corners{here[0], here[1], next[0], next[1]} {
        const CurveInstanceData& curve = ribs.curve;
        const CGPoint from = ribs.place(rib), to = ribs.place(rib + 1);
        const float wayX = float(to.x - from.x), wayY = float(to.y - from.y);
        light = {.start = {float(from.x), float(from.y)},
                 .way = {wayX, wayY},
                 .pointsAPixel = {curve.pointSize[0] / curve.frameSize[0],
                                  curve.pointSize[1] / curve.frameSize[1]},
                 .pixelsAPoint = curve.pixelsPerPoint,
                 .oneByRadius = 1 / curve.radius,
                 .coverage = curve.strength,
                 .reach = curve.radius * curve.pixelsPerPoint + 0.5f,
                 .oneByWaySquared = 1 / std::max(wayX * wayX + wayY * wayY, 1e-12f)};
        const auto [top, bottom] = std::ranges::minmax(corners, {}, &CGPoint::y);
        firstRow = int(std::clamp(std::floor(top.y), 0.0, double(height)));
        endRow = int(std::clamp(std::ceil(bottom.y), 0.0, double(height)));
    }

    /// What a triangle, from corner `first` on, covers of the line at `y`.
    void cover(int first, double y, float& begin, float& end) const {
        double low = 1e30, high = -1e30;
        for (int i = 0; i < 3; ++i) {
            const CGPoint &a = corners[std::size_t(first + i)],
                          &b = corners[std::size_t(first + (i + 1) % 3)];
            if ((a.y <= y) == (b.y <= y)) continue;
            const double x = a.x + (b.x - a.x) * ((y - a.y) / (b.y - a.y));
            low = std::min(low, x);
            high = std::max(high, x);
        }
        begin = float(low);
        end = float(high);
    }
};

class LineLayer final : public OverlayLayer {
  public:
    LineLayer(std::span<const OverlayLayout> layouts, const OverlayTarget& target, const OverlaySpans& spans)
        : target_(target), spans_(spans), bins_(target.height) {
        target_.samples = target.samples > 1 ? kMostSamples : 1;
        for (const OverlayLayout& layout : layouts) {
            constexpr std::size_t kFloats = sizeof(CurveInstanceData) / sizeof(float);
            for (std::size_t i = 0; i + kFloats <= layout.instances.size(); i += kFloats) {
                CurveInstanceData data;
                std::memcpy(&data, layout.instances.data() + i, sizeof data);
                add({data});
            }
        }
        for (std::size_t i = 0; i < pieces_.size(); ++i)
            bins_.add(std::uint32_t(i), pieces_[i].firstRow, pieces_[i].endRow);
    }

    void draw(const NativeImage& target, int firstRow, int endRow) const override {
        const std::size_t groups = std::size_t(target.width + kSpanLanes - 1) / kSpanLanes;
        std::unique_ptr<float[]> values;
        std::vector<std::uint8_t> isDrawn(groups);
        bins_.forEach(firstRow, endRow, [&](const std::vector<std::uint32_t>& things, int first, int end) {
            if (!values)
                values = std::make_unique_for_overwrite<float[]>(groups * kSpanLanes * 4 *
                                                                 std::size_t(target_.samples));
            for (int y = first; y < end; ++y) {
                const SampleRow row{target.pixels + y * target.rowBytes, target_.format, target_.samples,
                                    std::int64_t(groups) * kSpanLanes,   values.get(),   isDrawn.data()};
                for (std::uint32_t thing : things) drawPiece(pieces_[thing], row, y);
                spans_.resolve(row);
            }
        });
    }

  private:
    void add(const Ribs& ribs) {
        auto here = ribs.ends(0);
        for (int rib = 0; rib < int(ribs.curve.ribs); ++rib) {
            const auto next = ribs.ends(rib + 1);
            const Piece piece(ribs, rib, here, next, target_.height);
            if (piece.firstRow < piece.endRow) pieces_.push_back(piece);
            here = next;
        }
    }

    void drawPiece(const Piece& piece, const SampleRow& row, int y) const {
        if (y < piece.firstRow || y >= piece.endRow) return;
        const SamplePlaces& places = target_.samples == 1 ? kMiddle : kFour;
        std::array<SampleCover, kMostSamples> covers;
        float low = float(target_.width), high = 0;
        for (std::size_t s = 0; s < std::size_t(target_.samples); ++s) {
            covers[s].offset = places[s][0];
            for (int part = 0; part < 2; ++part) {
                float &begin = covers[s].begin[part], &end = covers[s].end[part];
                piece.cover(part, y + double(places[s][1]), begin, end);
                if (begin >= end) continue;
                low = std::min(low, begin - 1);
                high = std::max(high, end);
            }
        }
        const int begin = int(std::max(low, 0.0f)),
                  end = int(std::min(std::ceil(high), float(target_.width)));
        if (begin < end) spans_.line(piece.light, covers.data(), row, y, begin, end);
    }

    OverlayTarget target_;
    const OverlaySpans& spans_;
    std::vector<Piece> pieces_;
    RowBins bins_;
};

}  // namespace

std::unique_ptr<const OverlayLayer> lineLayer(std::span<const OverlayLayout> layouts,
                                              const OverlayTarget& target, const OverlaySpans& spans) {
    return std::make_unique<LineLayer>(layouts, target, spans);
}

}  // namespace qv
