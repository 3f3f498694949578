#include "QVFilterExtension/Private/FittedImage.h"

#include <algorithm>
#include <cmath>

#include "Platform/Drawing/BitmapCanvas.h"

namespace qv {

namespace {

/// A part of one side of the picture, and where it goes.
struct Span {
    double from, fromEnd, to, toEnd;
};

std::vector<Span> spansByCuts(double length, double wanted, double factor, const FittingCuts& cuts) {
    if (cuts.empty()) return {{0, length, 0, wanted}};
    std::vector<double> ends = cuts;
    ends.push_back(length);
    double kept = 0, stretched = 0, last = 0;
    for (std::size_t i = 0; i < ends.size(); ++i) {
        (i % 2 ? stretched : kept) += ends[i] - last;
        last = ends[i];
    }
    const double stretch = std::max(wanted - kept * factor, 0.0) / stretched;
    std::vector<Span> spans;
    double from = 0, to = 0;
    for (std::size_t i = 0; i < ends.size(); ++i) {
        const double toEnd =
            i + 1 == ends.size() ? wanted : to + (ends[i] - from) * (i % 2 ? stretch : factor);
        spans.push_back({from, ends[i], to, toEnd});
        from = ends[i], to = toEnd;
    }
    return spans;
}

/// `perforations` in a row: the first and the last of the film, and what lies between again and again.
std::vector<Span> spansByPitch(double length, double wanted, double pitch, int perforations) {
    const int own = std::max(int(std::lround(length / pitch)), 3);
    std::vector<Span> spans;
    for (int i = 0; i < perforations; ++i) {
        const int index = i == 0 ? 0 : i + 1 == perforations ? own - 1 : 1 + (i - 1) % (own - 2);
        spans.push_back(
            {index * pitch, (index + 1) * pitch, i * wanted / perforations, (i + 1) * wanted / perforations});
    }
    return spans;
}

UIImage drawnInParts(const UIImage& image, CGSize size, const std::vector<Span>& xSpans,
                     const std::vector<Span>& ySpans) {
    BitmapCanvas canvas(size, false, 1.0);
    const CGSize own = image.size();
    for (const Span& y : ySpans) {
        for (const Span& x : xSpans) {
            // Whole pixels, so that no seam shows between the parts.
            const double left = std::round(x.to), top = std::round(y.to);
            const double width = std::round(x.toEnd) - left, height = std::round(y.toEnd) - top;
            if (width <= 0 || height <= 0) continue;
            const double sx = width / (x.fromEnd - x.from), sy = height / (y.fromEnd - y.from);
            canvas.saveState();
            canvas.clipToRect(CGRectMake(left, top, width, height));
            canvas.drawImage(
                image, CGRectMake(left - x.from * sx, top - y.from * sy, own.width * sx, own.height * sy));
            canvas.restoreState();
        }
    }
    return canvas.image();
}

}  // namespace

UIImage fittedByCuts(const UIImage& image, CGSize size, double factor, const FittingCuts& xCuts,
                     const FittingCuts& yCuts) {
    const CGSize own = image.size();
    return drawnInParts(image, size, spansByCuts(own.width, size.width, factor, xCuts),
                        spansByCuts(own.height, size.height, factor, yCuts));
}

UIImage fittedFilm(const UIImage& film, CGSize size, const FilmGauge& gauge) {
    constexpr double kMostOfFrame = 0.2, kReferenceSide = 1080;
    const CGSize own = film.size();
    const double along = gauge.runsDown ? size.height : size.width,
                 across = gauge.runsDown ? size.width : size.height;
    const double largest =
        std::min(std::min(size.width, size.height) / kReferenceSide, kMostOfFrame * across / gauge.band);
    const int perforations = std::max(int(std::ceil(along / (gauge.pitch * largest) - 0.01)), 2);
    const double factor = along / (perforations * gauge.pitch);
    const std::vector<Span> lengthwise =
        spansByPitch(gauge.runsDown ? own.height : own.width, along, gauge.pitch, perforations);
    const double ownAcross = gauge.runsDown ? own.width : own.height;
    const std::vector<Span> crosswise =
        spansByCuts(ownAcross, across, factor, {gauge.band, ownAcross - gauge.band});
    return gauge.runsDown ? drawnInParts(film, size, crosswise, lengthwise)
                          : drawnInParts(film, size, lengthwise, crosswise);
}

}  // namespace qv
