#include "QVFilterExtension/MTIFilters/Transition/Paper/QVTearPaperFourPicMTIFilter.h"

#include <array>
#include <cmath>
#include <numbers>
#include <string>

namespace qv {

const QVFilterClass QVTearPaperFourPicMTIFilterClass{
    .name = "QVTearPaperFourPicMTIFilter",
    .superclass = &QVTearPaperTransitionMTIFilterClass,
    .title = "Torn paper, four prints",
    .help = "Four taped prints of both clips on a page of card, which the next clip tears away",
    .tags = {"scrapbook", "album", "photos", "tape", "stop motion"},
    .factory = makeFilter<QVTearPaperFourPicMTIFilter>,
};

PaperPose QVTearPaperFourPicMTIFilter::printPose(std::size_t index, std::size_t phase) const {
    if (phase < kFirst + index) return {};
    PaperPose pose = kPrints[index].pose;
    if (phase == kFirst + index) pose.scale *= kThrown, pose.angle *= -1.5;
    return pose;
}

MTIParameters QVTearPaperFourPicMTIFilter::parameters() const {
    const std::size_t phase = phaseOf(kBegins);
    std::array<float, 4> incoming{}, grey{};
    MTIParameters uniforms;
    for (std::size_t i = 0; i < std::size(kPrints); ++i) {
        incoming[i] = kPrints[i].incoming, grey[i] = kPrints[i].grey;
        const PaperPose pose = printPose(i, phase);
        const double angle = pose.angle / 180 * std::numbers::pi;
        // Before it comes it lies beside the frame.
        uniforms.set("print" + std::to_string(i + 1),
                     pose.scale == 0 ? MTIVector{9, 9, 1, 0}
                                     : MTIVector{float(0.5 + pose.x), float(0.5 - pose.y),
                                                 float(std::cos(angle) / pose.scale),
                                                 float(std::sin(angle) / pose.scale)});
    }
    uniforms.set("incoming", MTIVector(incoming));
    uniforms.set("grey", MTIVector(grey));
    return uniforms;
}

MTIImage QVTearPaperFourPicMTIFilter::outputImage() {
    if (!inputImage1() || !inputImage2()) return {};
    const std::size_t phase = phaseOf(kBegins);
    if (phase == 0) return inputImage1();
    if (phase == std::size(kBegins)) return incoming();

    const MTIImage card = page("paper06_page.jpg");
    if (phase <= std::size(kPage))
        return laid(inputImage1(), card.imageByApplyingTransform(placed(kPage[phase - 1])));

    std::vector<SpiritParam> scraps;
    for (std::size_t i = 0; i < std::size(kPrints); ++i) {
        const PaperPose pose = printPose(i, phase);
        if (pose.scale == 0) break;
        scraps.push_back(framing("paper02_print", pose));
        if (phase > kFirst + i) scraps.push_back(scrap("paper02_tape.png", fixedTo(pose, kTape)));
    }
    const MTIImage album =
        decorated(applyKernel({inputImage1(), inputImage2(), card}, parameters()), std::move(scraps));
    if (phase < kTorn) return album;
    const auto& [top, bottom] = kTears[phase - kTorn];
    divisionFilter_.setInputImage1(incoming());
    divisionFilter_.setInputImage2(album);
    divisionFilter_.setPointTopVector({float(top), 0});
    divisionFilter_.setPointBotVector({float(bottom), 1});
    return divisionFilter_.outputImage();
}

}  // namespace qv
