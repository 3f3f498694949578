#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVAIEdgeSpiritFilter.h"

#include <algorithm>
#include <cmath>

#include <fmt/format.h>

#include "Platform/Foundation/Log.h"
#include "QVFilterExtension/Private/LineDrawing.h"
#include "QVFilterExtension/Private/QVAssetCache.h"
#include "QVFilterExtension/Private/UIBezierPath+QVFESmooth.h"

namespace qv {

namespace {

/// The outline's radius, in longer sides of the mask.
constexpr double kRadius = 0.00390625;

/// A straight part of an outline, clockwise around the subject.
struct Edge {
    CGPoint start, end;
    double from = 0;  ///< lengths of all before it

    CGPoint middle() const { return {(start.x + end.x) / 2, (start.y + end.y) / 2}; }
    double length() const { return std::hypot(end.x - start.x, end.y - start.y); }
};

/// The outline from where the upright line through its middle crosses it first: a place that moves with the
/// subject and not with the choice of points.
QVOutline fromTheTop(const QVOutline& outline) {
    const std::size_t n = outline.size();
    const auto next = [&](std::size_t i) { return outline[(i + 1) % n]; };
    double length = 0, moment = 0;
    for (std::size_t i = 0; i < n; ++i) {
        const Edge edge{outline[i], next(i)};
        length += edge.length();
        moment += edge.length() * edge.middle().x;
    }
    const double middle = moment / length;
    std::size_t first = 0;
    CGPoint start = outline[0];
    double top = INFINITY;
    for (std::size_t i = 0; i < n; ++i) {
        const CGPoint a = outline[i], b = next(i);
        if ((a.x < middle) == (b.x < middle)) continue;
        const double y = a.y + (b.y - a.y) * (middle - a.x) / (b.x - a.x);
        if (y >= top) continue;
        top = y;
        first = i + 1;
        start = {middle, y};
    }
    QVOutline result{start};
    for (std::size_t i = 0; i < n; ++i) result.push_back(outline[(first + i) % n]);
    return result;
}

/// The outlines' edges one after another, but for those on the mask's border.
std::vector<Edge> edgesOf(const QVOutlineSet& outlines, const CGRect& mask) {
    std::vector<Edge> edges;
    double length = 0;
    for (const QVOutline& outline : outlines) {
        const QVOutline points = fromTheTop(outline);
        for (std::size_t i = 0; i < points.size(); ++i) {
            const Edge edge{points[i], points[(i + 1) % points.size()], length};
            if (isPointOnEdge(edge.middle(), mask)) continue;
            length += edge.length();
            edges.push_back(edge);
        }
    }
    return edges;
}

}  // namespace

const QVFilterClass QVAIEdgeSpiritFilterClass{
    .name = "QVAIEdgeSpiritFilter",
    .superclass = &QVAIEffectMTIFilterClass,
    .title = "Sprites on the edge",
    .help = "Sprites along the subject's outline; which they are is set in code",
    .factory = makeFilter<QVAIEdgeSpiritFilter>,
    .isPhotoTimeConst = false,
    .kind = QVFilterKind::auxiliary,
};

SpiritParam::Texture QVAIEdgeSpiritFilter::spiritTextureNamed(const std::string& fileName) {
    static auto& cache = *new QVAssetCache;
    const SpiritParam::Texture texture = cache.textureNamed(fileName);
    if (!texture) logLineOnce(fmt::format("init spiritTexture error, {}", fileName));
    return texture;
}

MTIImage QVAIEdgeSpiritFilter::outputImage() {
    const PixelBuffer& mask = maskPixelBuffer();
    if (!inputImage() || !mask) return inputImage();
    const double longer = std::max(mask.width(), mask.height());
    const std::vector<Edge> edges =
        edgesOf(QVObjectContour::getApproxContourPointsWithMask(mask, int(std::lround(kRadius * longer)),
                                                                float(1.0 / longer)),
                CGRectMake(0, 0, mask.width(), mask.height()));
    if (edges.empty()) return inputImage();
    const double way = edges.back().from + edges.back().length();

    const CGSize frame = inputImage().size();
    const double shorter = std::min(frame.width, frame.height);
    const CGAffineTransform toFrame =
        CGAffineTransformConcat(maskTransform(), fittingTransform(transformedMaskSize(), frame));
    std::vector<SpiritParam> params;
    for (const QVEdgeSpirit& sprite : edgeSpiritParam()) {
        const double at = way * std::clamp(sprite.place, 0.0, 1.0);
        const auto after = std::upper_bound(edges.begin(), edges.end(), at,
                                            [](double value, const Edge& edge) { return value < edge.from; });
        const Edge& edge = *std::prev(after);
        const double length = std::max(edge.length(), 1e-9), share = (at - edge.from) / length;
        // The subject lies to the right of the way.
        const CGSize outwards = CGSizeApplyAffineTransform(
            {(edge.end.y - edge.start.y) / length, (edge.start.x - edge.end.x) / length}, toFrame);
        const double unit = shorter / std::max(std::hypot(outwards.width, outwards.height), 1e-9);
        CGPoint place = CGPointApplyAffineTransform({edge.start.x + (edge.end.x - edge.start.x) * share,
                                                     edge.start.y + (edge.end.y - edge.start.y) * share},
                                                    toFrame);
        place.x += outwards.width * unit * sprite.distance;
        place.y += outwards.height * unit * sprite.distance - shorter * sprite.rise;
        // Sprite space: the frame's middle, half widths, y up.
        CGAffineTransform trans = CGAffineTransformMakeTranslation(
            2 * place.x / frame.width - 1, (frame.height - 2 * place.y) / frame.width);
        trans = CGAffineTransformRotate(trans, sprite.angle);
        trans = CGAffineTransformScale(trans, sprite.size.width * shorter / frame.width,
                                       sprite.size.height * shorter / frame.width);
        params.push_back(SpiritParam::paramWithTrans(trans, sprite.alpha, sprite.tint, sprite.texture));
    }
    spiritFilter_.setParams(std::move(params));
    spiritFilter_.setInputImage(inputImage());
    spiritFilter_.setOutputPixelFormat(outputPixelFormat());
    return spiritFilter_.outputImage();
}

}  // namespace qv
