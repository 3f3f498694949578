#pragma once

#include "Platform/ImageGraph/MTIFilters.h"
#include "QVFilterCore/QVAIEffectMTIFilter.h"

namespace qv {

/// The mask as an input of the classes that show nothing without one.
inline constexpr QVInput kSubjectMask = qvInput<&QVAIEffectMTIFilter::setMaskImage>(
    {.name = "maskImage", .role = QVInputRole::mask, .help = "white where the subject is"});

/// The effect's input where `mask` is white, transparent elsewhere. Nil without either.
MTIImage subjectCutOut(const QVAIEffectMTIFilter& effect, const MTIImage& mask,
                       MTIColorComponent component = MTIColorComponent::red);

/// The effect's mask with an edge a pixel softer. Nil without one.
MTIImage softSubjectMask(const QVAIEffectMTIFilter& effect);
/// The effect's mask in red and the softer one in green: where both are needed, one sample of a pixel tells
/// both.
MTIImage subjectMasks(const QVAIEffectMTIFilter& effect);

/// The effect's input by the softer mask.
MTIImage softSubjectCutOut(const QVAIEffectMTIFilter& effect);

}  // namespace qv
