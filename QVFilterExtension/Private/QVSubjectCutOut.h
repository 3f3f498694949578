#pragma once

#include "QVFilterCore/QVAIEffectMTIFilter.h"

namespace qv {

/// The mask as an input of the classes that show nothing without one.
inline constexpr QVInput kSubjectMask = qvInput<&QVAIEffectMTIFilter::setMaskImage>(
    {.name = "maskImage", .role = QVInputRole::mask, .help = "white where the subject is"});

/// The effect's input where `mask` is white, transparent elsewhere. Nil without either.
MTIImage subjectCutOut(const QVAIEffectMTIFilter& effect, const MTIImage& mask);

/// The same by the effect's own mask with an edge a pixel softer.
MTIImage softSubjectCutOut(const QVAIEffectMTIFilter& effect);

}  // namespace qv
