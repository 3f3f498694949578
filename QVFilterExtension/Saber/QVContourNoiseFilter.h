#pragma once

#include <memory>

#include "QVFilterExtension/Saber/QVInternalContourNoiseFilter.h"

namespace qv {

extern const QVFilterClass QVContourNoiseFilterClass;

/// Lets a line flicker like a blade of light: distorts it by the kind of noise that its parameters name. A
/// kind that there is not gives the input itself.
class QVContourNoiseFilter : public QVEffectMTIFilter {
  public:
    explicit QVContourNoiseFilter(const QVFilterClass& filterClass = QVContourNoiseFilterClass)
        : QVEffectMTIFilter(filterClass) {}

    /// How the line looks; of this the noise is read.
    const QVSaberParam& param() const { return param_; }
    void setParam(QVSaberParam param) { param_ = std::move(param); }

    /// A new filter for 0, 1 and 3; nil for others.
    static std::unique_ptr<QVInternalContourNoiseFilter> internalFilterWithType(int distortType);

    MTIImage outputImage() override;

  private:
    QVSaberParam param_;
};

}  // namespace qv
