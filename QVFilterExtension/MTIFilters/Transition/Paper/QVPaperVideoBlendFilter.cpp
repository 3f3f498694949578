#include "QVFilterExtension/MTIFilters/Transition/Paper/QVPaperVideoBlendFilter.h"

namespace qv {

const QVFilterClass QVPaperVideoBlendFilterClass{
    .name = "QVPaperVideoBlendFilter",
    .superclass = &QVTransitionMTIFilterClass,
    .help = "A frame cut to the shape of a piece of paper",
    .kind = QVFilterKind::auxiliary,
};

}  // namespace qv
