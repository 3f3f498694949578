#pragma once

#include <optional>

#include "Host/Timeline.h"
#include "Platform/ImageGraph/MTIContext.h"

namespace qv::host {

/// One picture that tells what a class does to the inputs: a transition at kTransitionProgress, everything
/// else at `time` seconds or, without, at a moment that suits its category. Nil when the class gives no
/// picture of these inputs. Fails as device.
Bitmap classPicture(const QVFilterClass& filterClass, const FilterInputs& inputs, std::optional<double> time,
                    MTIContext& context);

/// Just before the middle, where many transitions hide everything behind a flash or a blur.
inline constexpr double kTransitionProgress = 0.4;

}  // namespace qv::host
