#include "QVFilterExtension/MTIFilters/AIEffect/AIEffectFilter/QVAIMateriaLineFilter.h"

namespace qv {

namespace {
using Filter = QVAIMateriaLineFilter;
}  // namespace

const QVFilterClass QVAIMateriaLineFilterClass{
    .name = "QVAIMateriaLineFilter",
    .superclass = &QVMTIFilterClass,
    .title = "Material of a layer",
    .help = "Shows a material where a layer is opaque",
    .tags = {"texture", "foil", "clip", "matte"},
    .factory = makeFilter<QVAIMateriaLineFilter>,
    .category = QVFilterCategory::subject,
    .inputs = {{qvInput<&Filter::setMateriaImage>(
                    {.name = "materiaImage", .role = QVInputRole::frame, .help = "the material"}),
                qvInput<&Filter::setInterlayerImage>(
                    {.name = "interlayerImage", .role = QVInputRole::layer, .help = "whose alpha is read"})}},
    .kind = QVFilterKind::auxiliary,
};

MTIImage QVAIMateriaLineFilter::outputImage() {
    const auto kernel = filterClass().kernel();
    if (!materiaImage_ || !interlayerImage_ || !kernel) return {};
    return kernel->applyToInputImages({materiaImage_, interlayerImage_}, {}, interlayerImage_.size(),
                                      outputPixelFormat());
}

}  // namespace qv
