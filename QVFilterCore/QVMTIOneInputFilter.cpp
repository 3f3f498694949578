#include "QVFilterCore/QVMTIOneInputFilter.h"

namespace qv {

const QVFilterClass QVMTIOneInputFilterClass{.name = "QVMTIOneInputFilter",
                                             .superclass = &QVMTIFilterClass,
                                             .help = "A filter over one picture",
                                             .factory = makeFilter<QVMTIOneInputFilter>,
                                             .inputs = QVFilterInputs::one};

}  // namespace qv
