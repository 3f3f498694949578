#include "QVFilterCore/QVMTITwoInputFilter.h"

namespace qv {

const QVFilterClass QVMTITwoInputFilterClass{
    .name = "QVMTITwoInputFilter",
    .superclass = &QVMTIOneInputFilterClass,
    .title = "Filter over two pictures",
    .help = "A filter over two pictures",
    .factory = makeFilter<QVMTITwoInputFilter>,
    .inputs = {{kInputImage,
                qvInput<&QVMTITwoInputFilter::setInputImage2>(
                    {.name = "inputImage2", .role = QVInputRole::incoming, .help = "the second picture"})}},
};

MTIImage QVMTITwoInputFilter::outputImage() {
    if (!inputImage2()) return {};
    return applyKernel({inputImage(), inputImage2()}, parameters());
}

}  // namespace qv
