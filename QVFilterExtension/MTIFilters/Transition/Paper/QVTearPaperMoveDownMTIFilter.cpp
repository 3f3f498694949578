#include "QVFilterExtension/MTIFilters/Transition/Paper/QVTearPaperMoveDownMTIFilter.h"

#include <cmath>

#include "Platform/Drawing/BitmapCanvas.h"

namespace qv {

namespace {

/// Of the edge's assets: where the tear lies, from the top, and its height.
constexpr double kTearInAsset = 132, kAssetHeight = 460;

}  // namespace

const QVFilterClass QVTearPaperMoveDownMTIFilterClass{
    .name = "QVTearPaperMoveDownMTIFilter",
    .superclass = &QVTearPaperTransitionMTIFilterClass,
    .title = "Torn paper, sliding poster",
    .help =
        "The clip is a torn poster that slides down in jerks; wrapping paper hangs on, the next clip is "
        "behind",
    .tags = {"rip", "poster", "kraft", "layers", "stop motion"},
    .factory = makeFilter<QVTearPaperMoveDownMTIFilter>,
};

MTIImage QVTearPaperMoveDownMTIFilter::posterShape() const {
    return fitted("paper03_edgeSize.png", [this](const UIImage& edge, CGSize frame) {
        const double width = edge.size().width * frame.width / 1920 * enlargement(),
                     scale = width / edge.size().width;
        const double top = (0.5 - kTear) * frame.height - kTearInAsset * scale;
        BitmapCanvas canvas(frame, false, 1.0);
        canvas.drawImage(edge, CGRectMake((frame.width - width) / 2, top, width, edge.size().height * scale));
        const double below = std::floor(top + (kAssetHeight - 1) * scale);
        canvas.fillRect(CGRectMake(0, below, frame.width, frame.height - below), {1, 1, 1});
        return canvas.image();
    });
}

MTIImage QVTearPaperMoveDownMTIFilter::outputImage() {
    if (!inputImage1() || !inputImage2()) return {};
    const std::size_t phase = phaseOf(kBegins);
    if (phase == 0) return inputImage1();
    if (phase == std::size(kBegins)) return incoming();

    const Slide& slide = kSlides[phase - 1];
    const double left = 1 - double(phase) / double(std::size(kBegins));
    MTIImage wall = incoming().imageByApplyingTransform(placed({1 + (kCloser - 1) * left}));
    // The middle of an edge's asset, on a sheet.
    const double belowTear = (kAssetHeight / 2 - kTearInAsset) * enlargement() / 1920 * double(ratio());
    const PaperPose edge{1, 0, kTear - belowTear};
    const PaperPose poster{kTilted, 0, -slide.sheet, slide.sheetAngle},
        wrap{kTilted, 0, -slide.wrap, slide.wrapAngle};
    wall = decorated(wall, {scrap("paper03_kraft.png", fixedTo(wrap, edge))});
    return decorated(laid(wall, cut(inputImage1(), poster, posterShape(), poster)),
                     {scrap("paper03_edgeRim.png", fixedTo(poster, edge))});
}

}  // namespace qv
