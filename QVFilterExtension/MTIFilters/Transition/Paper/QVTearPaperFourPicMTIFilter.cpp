#include "QVFilterExtension/MTIFilters/Transition/Paper/QVTearPaperFourPicMTIFilter.h"

#include <algorithm>

namespace qv {

const QVFilterClass QVTearPaperFourPicMTIFilterClass{
    .name = "QVTearPaperFourPicMTIFilter",
    .superclass = &QVTearPaperTransitionMTIFilterClass,
    .title = "Torn paper, four prints",
    .help = "Four taped prints of both clips on a page of card, which the next clip tears away",
    .tags = {"scrapbook", "album", "photos", "tape", "stop motion"},
    .factory = makeFilter<QVTearPaperFourPicMTIFilter>,
};

MTIImage QVTearPaperFourPicMTIFilter::outputImage() {
    if (!inputImage1() || !inputImage2()) return {};
    const std::size_t phase = phaseOf(kBegins);
    if (phase == 0) return inputImage1();
    if (phase == std::size(kBegins)) return incoming();

    const MTIImage card = page("paper06_page.jpg");
    if (phase <= std::size(kPage))
        return laid(inputImage1(), card.imageByApplyingTransform(placed(kPage[phase - 1])));

    MTIImage album = card;
    std::vector<SpiritParam> scraps;
    const std::size_t count = phase < kFirst ? 0 : std::min(phase - kFirst + 1, std::size(kPrints));
    for (std::size_t i = 0; i < count; ++i) {
        const Print& print = kPrints[i];
        PaperPose pose = print.pose;
        const bool comes = phase == kFirst + i;
        if (comes) pose.scale *= kThrown, pose.angle *= -1.5;
        MTIImage clip =
            (print.incoming ? incoming() : inputImage1()).imageByApplyingTransform(placed(pose));
        if (print.grey) {
            greyFilter_.setInputImage(clip);
            greyFilter_.setStrength(1);
            clip = greyFilter_.outputImage();
        }
        album = laid(album, clip);
        scraps.push_back(framing("paper02_print", pose));
        if (!comes) scraps.push_back(scrap("paper02_tape.png", fixedTo(pose, kTape)));
    }
    album = decorated(album, std::move(scraps));
    if (phase < kTorn) return album;
    const auto& [top, bottom] = kTears[phase - kTorn];
    divisionFilter_.setInputImage1(incoming());
    divisionFilter_.setInputImage2(album);
    divisionFilter_.setPointTopVector({float(top), 0});
    divisionFilter_.setPointBotVector({float(bottom), 1});
    return divisionFilter_.outputImage();
}

}  // namespace qv
