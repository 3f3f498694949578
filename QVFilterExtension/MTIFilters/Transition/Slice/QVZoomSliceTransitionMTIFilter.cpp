#include "QVFilterExtension/MTIFilters/Transition/Slice/QVZoomSliceTransitionMTIFilter.h"

#include <array>

#include "QVFilterCore/QV_CubicBezier.h"

namespace qv {

namespace {
using Transition = QVZoomSliceTransitionMTIFilter;
constexpr std::array<std::string_view, 5> kTypes = {"columns in", "rows in", "columns out", "rows out",
                                                    "diagonals in"};
}  // namespace

const QVFilterClass QVZoomSliceTransitionMTIFilterClass{
    .name = "QVZoomSliceTransitionMTIFilter",
    .superclass = &QVTransitionMTIFilterClass,
    .title = "Zooming strips",
    .help = "Strips zoom one after the other and change clips at their fastest",
    .tags = {"slice", "zoom", "split"},
    .factory = makeFilter<QVZoomSliceTransitionMTIFilter>,
    .properties =
        {
            qvProperty<&Transition::type, &Transition::setType>({
                .name = "type",
                .title = "Strips",
                .help = "how the strips lie and which way they zoom",
                .variants = kTypes,
            }),
        },
};

float QVZoomSliceTransitionMTIFilter::newProgress() const {
    return float(QV_CubicBezier(double(progress()), 0.5, 0, 0, 1));
}

MTIParameters QVZoomSliceTransitionMTIFilter::parameters() const {
    MTIParameters uniforms = timingParameters(newProgress());
    uniforms.set("type", type_);
    return uniforms;
}

}  // namespace qv
