#include "QVFilterCore/QVMTIOneInputFilter.h"

namespace qv {

const QVFilterClass QVMTIOneInputFilterClass{.name = "QVMTIOneInputFilter",
                                             .superclass = &QVMTIFilterClass,
                                             .factory = makeFilter<QVMTIOneInputFilter>,
                                             .inputs = QVFilterInputs::one};

}  // namespace qv
