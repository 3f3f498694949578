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
    /// `top` over `below`.
    MTIImage blended(const MTIImage& top, const MTIImage& below) const;
};

}  // namespace qv
