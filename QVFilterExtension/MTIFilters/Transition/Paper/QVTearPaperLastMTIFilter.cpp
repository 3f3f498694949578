#include "QVFilterExtension/MTIFilters/Transition/Paper/QVTearPaperLastMTIFilter.h"

namespace qv {

const QVFilterClass QVTearPaperLastMTIFilterClass{
    .name = "QVTearPaperLastMTIFilter",
    .superclass = &QVTearPaperTransitionMTIFilterClass,
    .title = "Torn paper, ripped poster",
    .help = "The clip is a poster that is ripped off by the handful; the next clip was behind it",
    .tags = {"rip", "tear", "poster", "scraps", "stop motion"},
    .factory = makeFilter<QVTearPaperLastMTIFilter>,
};

MTIImage QVTearPaperLastMTIFilter::outputImage() {
    if (!inputImage1() || !inputImage2()) return {};
    const std::size_t phase = phaseOf(kBegins);
    if (phase == 0) return inputImage1();
    if (phase == std::size(kBegins)) return incoming();

    const Rip& rip = kRips[phase - 1];
    const double left = 1 - double(phase) / double(std::size(kBegins));
    divisionFilter_.setInputImage1(inputImage1());
    divisionFilter_.setInputImage2(incoming().imageByApplyingTransform(placed({1 + (kCloser - 1) * left})));
    divisionFilter_.setPointTopVector({float(rip.top), 0});
    divisionFilter_.setPointBotVector({float(rip.bottom), 1});
    const MTIImage poster = divisionFilter_.outputImage();
    if (rip.to.scale == 0) return poster;

    // The handful shows what was printed where it came from.
    const double closer = rip.to.scale / rip.from.scale;
    const PaperPose print =
        fixedTo({closer, rip.to.x, rip.to.y, rip.to.angle}, {1, -rip.from.x, -rip.from.y});
    PaperPose shape = rip.to;
    shape.scale *= enlargement();
    return decorated(laid(poster, cut(inputImage1(), print, paper("paper07_scrapSize.png"), shape)),
                     {scrap("paper07_scrapRim.png", rip.to)});
}

}  // namespace qv
