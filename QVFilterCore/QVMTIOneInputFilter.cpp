#include "QVFilterCore/QVMTIOneInputFilter.h"

namespace qv {

const QVFilterClass QVMTIOneInputFilterClass{.name = "QVMTIOneInputFilter",
                                             .superclass = &QVMTIFilterClass,
                                             .title = "Filter over one picture",
                                             .help = "A filter over one picture",
                                             .factory = makeFilter<QVMTIOneInputFilter>,
                                             .inputs = {{kInputImage}}};

}  // namespace qv
