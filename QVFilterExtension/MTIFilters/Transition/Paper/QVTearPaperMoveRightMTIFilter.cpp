#include "QVFilterExtension/MTIFilters/Transition/Paper/QVTearPaperMoveRightMTIFilter.h"

namespace qv {

const QVFilterClass QVTearPaperMoveRightMTIFilterClass{
    .name = "QVTearPaperMoveRightMTIFilter",
    .superclass = &QVTearPaperTransitionMTIFilterClass,
    .title = "Torn paper, postage stamps",
    .help = "The clips as postage stamps: one is cancelled by a postmark and pushed out by the next",
    .tags = {"stamp", "postmark", "letter", "travel", "stop motion"},
    .factory = makeFilter<QVTearPaperMoveRightMTIFilter>,
};

MTIImage QVTearPaperMoveRightMTIFilter::outputImage() {
    if (!inputImage1() || !inputImage2()) return {};
    const std::size_t phase = phaseOf(kBegins);
    if (phase == 0) return inputImage1();
    if (phase == std::size(kBegins)) return incoming();

    MTIImage letter = page("paper04_page.jpg");
    std::vector<SpiritParam> scraps;
    const auto& [first, second] = kStamps[phase - 1];
    if (first.scale > 0) {
        letter = laid(letter, inputImage1().imageByApplyingTransform(placed(first)));
        scraps.push_back(framing("paper04_stamp", first));
        if (phase >= kMarked) {
            PaperPose mark = fixedTo(first, kPostmark);
            if (phase == kMarked) mark.scale *= kMarkLifted;
            scraps.push_back(scrap("paper04_postmark.png", mark));
        }
    }
    if (second.scale > 0) {
        letter = laid(letter, incoming().imageByApplyingTransform(placed(second)));
        scraps.push_back(framing("paper04_stamp", second));
    }
    return decorated(letter, std::move(scraps));
}

}  // namespace qv
