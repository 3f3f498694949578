#include "QVFilterExtension/MTIFilters/Transition/Paper/QVTearPaperZoomMTIFilter.h"

namespace qv {

const QVFilterClass QVTearPaperZoomMTIFilterClass{
    .name = "QVTearPaperZoomMTIFilter",
    .superclass = &QVTearPaperTransitionMTIFilterClass,
    .title = "Torn paper, hole",
    .help = "A hole is torn into the clip, wider and wider, and the next clip comes through",
    .tags = {"rip", "tear", "reveal", "break through", "stop motion"},
    .factory = makeFilter<QVTearPaperZoomMTIFilter>,
};

MTIImage QVTearPaperZoomMTIFilter::outputImage() {
    if (!inputImage1() || !inputImage2()) return {};
    const std::size_t phase = phaseOf(kBegins);
    if (phase == 0) return inputImage1();
    if (phase == std::size(kBegins)) return incoming();

    const std::string hole = phase < kLarge ? "paper05_small" : "paper05_large";
    PaperPose pose = kHole[phase - 1];
    if (isUpright()) pose.angle += 90;
    PaperPose shape = pose;
    shape.scale *= enlargement();
    const double way = double(phase) / double(std::size(kBegins));
    const MTIImage sheet = inputImage1().imageByApplyingTransform(placed({1 + (kOutgoing - 1) * way}));
    const PaperPose behind{kIncoming + (1 - kIncoming) * way, pose.x * (1 - way), pose.y * (1 - way)};
    return decorated(laid(sheet, cut(incoming(), behind, paper(hole + "Hole.png"), shape)),
                     {scrap(hole + "Rim.png", pose)});
}

}  // namespace qv
