#include "QVFilterExtension/MTIFilters/Transition/Paper/QVTearPaperSecondMTIFilter.h"

namespace qv {

const QVFilterClass QVTearPaperSecondMTIFilterClass{
    .name = "QVTearPaperSecondMTIFilter",
    .superclass = &QVTearPaperTransitionMTIFilterClass,
    .title = "Torn paper, taped print",
    .help = "A print of the next clip is thrown on a sheet of a notebook, taped down and comes closer",
    .tags = {"scrapbook", "notebook", "tape", "collage", "stop motion"},
    .factory = makeFilter<QVTearPaperSecondMTIFilter>,
};

MTIImage QVTearPaperSecondMTIFilter::outputImage() {
    if (!inputImage1() || !inputImage2()) return {};
    const std::size_t phase = phaseOf(kBegins);
    if (phase == 0) return inputImage1();
    if (phase == std::size(kBegins)) return incoming();

    const PaperPose& print = kPrint[phase - 1];
    MTIImage table = inputImage1().imageByApplyingTransform(placed({1 + kGrowth * double(phase)}));
    table = decorated(table, {scrap("paper02_note.png", kNote[phase - 1])});
    if (print.scale == 0) return table;
    std::vector<SpiritParam> scraps{framing("paper02_print", print)};
    for (const Tape& tape : kTapes)
        if (phase >= tape.phase) scraps.push_back(scrap("paper02_tape.png", fixedTo(print, tape.pose)));
    return decorated(laid(table, incoming().imageByApplyingTransform(placed(print))), std::move(scraps));
}

}  // namespace qv
