#include "QVFilterExtension/MTIFilters/Transition/Paper/QVTearPaperMoveDownMTIFilter.h"

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
    .help = "The clip is a torn poster that slides down in jerks; wrapping paper hangs on, the next clip is behind",
    .tags = {"rip", "poster", "kraft", "layers", "stop motion"},
    .factory = makeFilter<QVTearPaperMoveDownMTIFilter>,
};

MTIImage QVTearPaperMoveDownMTIFilter::sheet(const std::string& fileName) const {
    return fitted(fileName, [this](const UIImage& edge, CGSize frame) {
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
    // From the asset's middle to its tear.
    const double toTear = (kAssetHeight / 2 - kTearInAsset) * enlargement() / 1920 * double(ratio());
    wall = decorated(wall, {scrap("paper03_kraft.png",
                                  {1, 0, kTear * kTilted - slide.wrap - toTear, slide.wrapAngle})});
    const PaperPose pose{kTilted, 0, -slide.sheet, slide.sheetAngle};
    wall = laid(wall, sheet("paper03_edgeButtom.png").imageByApplyingTransform(placed(pose)));
    return laid(wall, cut(inputImage1(), pose, sheet("paper03_edgeSize.png"), pose));
}

}  // namespace qv
