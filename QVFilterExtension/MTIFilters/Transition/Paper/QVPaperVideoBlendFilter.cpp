#include "QVFilterExtension/MTIFilters/Transition/Paper/QVPaperVideoBlendFilter.h"

namespace qv {

const QVFilterClass QVPaperVideoBlendFilterClass{
    .name = "QVPaperVideoBlendFilter",
    .superclass = &QVTransitionMTIFilterClass,
    .title = "Paper cut-out",
    .help = "A frame cut to the shape of a piece of paper",
    .tags = {"mask", "shape", "collage"},
    .kind = QVFilterKind::auxiliary,
};

}  // namespace qv
