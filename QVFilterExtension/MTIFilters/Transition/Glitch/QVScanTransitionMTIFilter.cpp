#include "QVFilterExtension/MTIFilters/Transition/Glitch/QVScanTransitionMTIFilter.h"

#include <array>

namespace qv {

namespace {
using Transition = QVScanTransitionMTIFilter;
constexpr std::array<std::string_view, 6> kScanTypes = {"down", "up", "right", "left", "diagonal", "circle"};
}  // namespace

const QVFilterClass QVScanTransitionMTIFilterClass{
    .name = "QVScanTransitionMTIFilter",
    .superclass = &QVTransitionMTIFilterClass,
    .title = "Scanning line",
    .help = "A bright line scans the picture and leaves the incoming clip",
    .tags = {"wipe", "laser", "scanner", "light"},
    .factory = makeFilter<QVScanTransitionMTIFilter>,
    .properties =
        {
            qvProperty<&Transition::scanType, &Transition::setScanType>({
                .name = "scanType",
                .title = "Direction",
                .help = "where the line moves to",
                .variants = kScanTypes,
            }),
        },
};

float QVScanTransitionMTIFilter::newProgress() const {
    const double centered = 2 * double(progress()) - 1;
    return float(0.5 + 0.5 * centered * centered * centered);
}

MTIParameters QVScanTransitionMTIFilter::parameters() const {
    MTIParameters uniforms = QVTransitionMTIFilter::parameters();
    uniforms.set("scanType", scanType_);
    return uniforms;
}

}  // namespace qv
