#pragma once

#include "QVFilterCore/QVEffectMTIFilter.h"
#include "QVFilterExtension/Saber/QVSaberParam.h"

namespace qv {

extern const QVFilterClass QVInternalContourNoiseFilterClass;
extern const QVFilterClass QVInternalContourNoiseFilter1Class;
extern const QVFilterClass QVInternalContourNoiseFilter3Class;

/// Moves the pixels of a line by noise that flows with the time, which is in milliseconds. The kind of noise
/// is the class's: wisps that drift and curl, waves that run through the line, jags that leap from place to
/// place 14 times a second.
class QVInternalContourNoiseFilter : public QVEffectMTIFilter {
  public:
    explicit QVInternalContourNoiseFilter(
        const QVFilterClass& filterClass = QVInternalContourNoiseFilterClass)
        : QVEffectMTIFilter(filterClass) {}

    /// How the line looks; of this the noise is read.
    const QVSaberParam& param() const { return param_; }
    void setParam(QVSaberParam param) { param_ = std::move(param); }

    /// "uTime" (milliseconds), "uDirection", "uNSpeed", "uDistortion", "uAspectRatio", "uNScale",
    /// "uComplexity".
    MTIParameters parameters() const override;

  private:
    QVSaberParam param_;
};

}  // namespace qv
