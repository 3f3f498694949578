#pragma once

#include "QVFilterCore/QVTransitionMTIFilter.h"

namespace qv {

/// Cuts a clip frame, `inputImage1`, to the shape of a piece of paper, `inputImage2`: the frame keeps as much
/// as the shape's alpha says, and is transparent where there is no paper. Colours of the shape do not count.
extern const QVFilterClass QVPaperVideoBlendFilterClass;

}  // namespace qv
