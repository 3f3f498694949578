#include "QVFilterCore/QVMTITwoInputFilter.h"

namespace qv {

const QVFilterClass QVMTITwoInputFilterClass{.name = "QVMTITwoInputFilter",
                                             .superclass = &QVMTIOneInputFilterClass,
                                             .help = "A filter over two pictures",
                                             .factory = makeFilter<QVMTITwoInputFilter>,
                                             .inputs = QVFilterInputs::two};

MTIImage QVMTITwoInputFilter::outputImage() {
    if (!inputImage2()) return {};
    return applyKernel({inputImage(), inputImage2()}, parameters());
}

}  // namespace qv
