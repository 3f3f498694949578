#pragma once

#include "QVFilterCore/QVAIEffectMTIFilter.h"

namespace qv {

extern const QVFilterClass QVAICelebrateFilterClass;

/// Base of the celebrations: the world changes, and the subject is put back on top of it untouched.
class QVAICelebrateFilter : public QVAIEffectMTIFilter {
  public:
    explicit QVAICelebrateFilter(const QVFilterClass& filterClass = QVAICelebrateFilterClass)
        : QVAIEffectMTIFilter(filterClass) {}

  protected:
    /// The subject over nothing, cut out by the mask with an edge a pixel softer. Nil without a frame or a
    /// mask.
    MTIImage subjectCutOut() const;
    /// `top` over `below`.
    MTIImage blended(const MTIImage& top, const MTIImage& below) const;
};

}  // namespace qv
