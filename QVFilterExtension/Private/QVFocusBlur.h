#pragma once

#include "QVFilterCore/QVEffectMTIFilter.h"

namespace qv {

/// The effect's input blurred as what lies out of focus: a Gaussian of b/48 of the frame's shorter side. The
/// strength b is the first of the effect's `extractValues` as a float, `kDefaultEffectValue` without one. Nil
/// without an input.
MTIImage focusBlurredInput(const QVEffectMTIFilter& effect);

}  // namespace qv
